"""What is measured: one module a figure."""
