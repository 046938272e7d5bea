#ifndef QUORVANE_TOOLS_FORMATS_PARAMS_WRITER_H
#define QUORVANE_TOOLS_FORMATS_PARAMS_WRITER_H

#include <string>
#include <utility>
#include <vector>

// The params file of an installer: properties that may be changed without signing the bundle again.
// extractor/run/params_file.h has its grammar.

namespace tools {

using Properties = std::vector<std::pair<std::string, std::string>>;

// Returns the params file's bytes. Throws InputError, naming the property, when a name is empty or
// a text does not fit its field.
std::string encodeParams(const Properties& properties);

// Returns what the bytes of a params file say. Throws InputError when there is no marker, the count
// is no number of pairs, or the pairs are cut short.
Properties decodeParams(const std::string& bytes);

// Gives the property its value where it stands, once, or else at the end.
void setProperty(Properties* properties, const std::string& name, const std::string& value);

// Takes the property away. Throws InputError when there is none of the name.
void unsetProperty(Properties* properties, const std::string& name);

}  // namespace tools

#endif
