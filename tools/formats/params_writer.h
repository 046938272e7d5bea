#ifndef QUORVANE_TOOLS_FORMATS_PARAMS_WRITER_H
#define QUORVANE_TOOLS_FORMATS_PARAMS_WRITER_H

#include <string>
#include <utility>
#include <vector>

// The params file of an installer: properties that may be changed without signing the bundle again.
// extractor/run/params_file.h has its grammar.

namespace tools {

using Properties = std::vector<std::pair<std::string, std::string>>;

// Returns the params file's bytes. Throws InputError, naming the property, if a name is empty or a
// text does not fit its field.
std::string encodeParams(const Properties& properties);

// Decodes the bytes of a params file. Throws InputError if there is no marker, the count is not a
// number of pairs, or the pairs are truncated.
Properties decodeParams(const std::string& bytes);

// Sets the property's value where it already is, once, or else at the end.
void setProperty(Properties* properties, const std::string& name, const std::string& value);

// Removes the property. Throws InputError if there is none of that name.
void unsetProperty(Properties* properties, const std::string& name);

}  // namespace tools

#endif
