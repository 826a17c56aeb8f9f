// Headers are precompiled for a source file, even an empty one.
