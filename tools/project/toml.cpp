// Holds the code of the TOML library, which the other files see the declarations of.
#define TOML_IMPLEMENTATION
#include <toml++/toml.h>
