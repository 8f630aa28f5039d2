// A module that is only there for its resources.
