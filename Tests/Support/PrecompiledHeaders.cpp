// The target of the headers that the tests share needs a source; it has nothing in it.
