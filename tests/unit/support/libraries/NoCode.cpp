// A module of which only the resources are wanted.
