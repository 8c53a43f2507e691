"""The steps of the tour. Each is a function of the world, named for what must happen."""
