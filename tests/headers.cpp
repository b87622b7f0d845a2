// Nothing of its own: the precompiled header has to belong to something that is compiled.
