#pragma once

#include <string>
#include <vector>

/** An external program without anything around it. */
namespace BareProgram {

/**
 * Starts the program, reads its standard output to the end, and waits for it. Its standard
 * input is empty and its standard error goes nowhere.
 * @param command path of the program, then its arguments
 * @param[out] output what the program printed
 * @return its exit code, or -1 when it could not be started or was killed
 */
int run(const std::vector<std::string> &command, std::string &output);

} // namespace BareProgram
