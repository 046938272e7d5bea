#ifndef QUORVANE_LAUNCHER_JVM_JAVA_TEXT_H
#define QUORVANE_LAUNCHER_JVM_JAVA_TEXT_H

#include <string>

// Returns `text` as the Java Native Interface expects texts: four-byte UTF-8 characters become two
// surrogates of three bytes each. All other bytes are unchanged, even those that are not UTF-8. Any
// thread.
std::string javaText(const char* text);

#endif
