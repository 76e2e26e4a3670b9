// Compiled once to make the precompiled header that every target shares (see Layers.cmake).
