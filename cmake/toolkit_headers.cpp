// The precompiled header of the windows is made with this file, which has nothing of its own.
