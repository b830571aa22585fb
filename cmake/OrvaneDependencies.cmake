# Looks up what the product links. Each is a Debian package listed in scripts/install-dependencies.

find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(CURL REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(SECP256K1 REQUIRED IMPORTED_TARGET libsecp256k1)
pkg_check_modules(UV REQUIRED IMPORTED_TARGET libuv)
pkg_check_modules(JSONCPP REQUIRED IMPORTED_TARGET jsoncpp)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET libplist-2.0)
pkg_check_modules(NL REQUIRED IMPORTED_TARGET libnl-route-3.0 libnl-genl-3.0)
# Headers alone, without a file of its own that would tell where they are.
find_path(RAPIDXML_INCLUDE_DIR rapidxml/rapidxml.hpp REQUIRED)
