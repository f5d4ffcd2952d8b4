"""The front of the download tool.

It takes the two command lines by which the library drives the tool, does them with the tool's own package, and gives
the library exactly what it reads. Every other command line goes to the tool as it is.
"""
