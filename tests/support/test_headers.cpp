// Has no tests: its target compiles the headers that all tests share.
