// SHA-1 as the protocol writes it: 40 lower-case hexadecimal digits. It tells whether bytes have come as they were
// sent; nothing is kept safe by it.
#ifndef ORVANE_TOOLS_DEVSERVER_SHA1_TEXT_H
#define ORVANE_TOOLS_DEVSERVER_SHA1_TEXT_H

#include <string>
#include <string_view>

namespace OrvaneDevServer {

// Of bytes in memory. Any thread, like the next.
std::string Sha1Text(std::string_view data);
// Of a whole file, read in pieces; "" if it cannot be read.
std::string Sha1TextOfFile(const std::string& path);

}  // namespace OrvaneDevServer

#endif
