#include "Places.h"

std::string projectFile(const std::string& name) { return PROJECT_FOLDER "/" + name; }

std::string builtFile(const std::string& name) { return BUILD_FOLDER "/" + name; }

std::string builtProgram(const std::string& name) { return builtFile("bin/" + name); }
