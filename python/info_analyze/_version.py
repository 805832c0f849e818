"""The version of this package, which is that of the library it was made with."""

__version__ = "1.0.0"
