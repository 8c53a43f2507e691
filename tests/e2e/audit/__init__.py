"""What must hold for every window: names, places, the keyboard's way through it, and what its controls change."""
