// SHA-1 as the protocol writes it: 40 lower-case hexadecimal digits.
#ifndef ORVANE_TOOLS_DEVSERVER_SHA1_TEXT_H
#define ORVANE_TOOLS_DEVSERVER_SHA1_TEXT_H

#include <string>
#include <string_view>

namespace OrvaneDevServer {

std::string Sha1Text(std::string_view data);
// Of a whole file, read in pieces; "" if it cannot be read.
std::string Sha1TextOfFile(const std::string& path);

}  // namespace OrvaneDevServer

#endif
