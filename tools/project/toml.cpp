// Contains the code of the TOML library; the other files see only its declarations.
#define TOML_IMPLEMENTATION
#include <toml++/toml.h>
