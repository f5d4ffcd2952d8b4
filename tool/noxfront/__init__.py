"""The front of the download tool.

It handles the command lines of the library and the jobs with the tool's own package, and prints exactly what they read.
Every other command line is passed to the tool unchanged.
"""
