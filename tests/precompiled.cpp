// The precompiled header of the tests needs a file to belong to.
