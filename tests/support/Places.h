// The full names of files that tests read and of programs that they start. They stand in one small
// file of their own: all else compiles to the same in each clone, and ccache can hand it over.
#pragma once

#include <string>

// `name` counts from the project's folder.
std::string projectFile(const std::string& name);

// `name` counts from the folder that the project is built in.
std::string builtFile(const std::string& name);

std::string builtProgram(const std::string& name);
