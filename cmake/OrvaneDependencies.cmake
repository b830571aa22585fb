# Looks up what the product links. Each is a Debian package listed in scripts/install-dependencies.

find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(CURL REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(SECP256K1 REQUIRED IMPORTED_TARGET libsecp256k1)
pkg_check_modules(MINIZIP REQUIRED IMPORTED_TARGET minizip)
pkg_check_modules(UV REQUIRED IMPORTED_TARGET libuv)
pkg_check_modules(JSONCPP REQUIRED IMPORTED_TARGET jsoncpp)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET libplist-2.0)
if(ORVANE_BUILD_TOOLS)
  pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)  # for the development server alone
endif()
pkg_check_modules(NL REQUIRED IMPORTED_TARGET libnl-route-3.0 libnl-genl-3.0)
# Headers alone, without a file of its own that would tell where they are.
find_path(RAPIDXML_INCLUDE_DIR rapidxml/rapidxml.hpp REQUIRED)

# cpp-httplib has a library of its own, which no sanitizer has built: what orders its threads is half invisible to
# ThreadSanitizer, which then takes its first use of a static table for a race.
function(orvane_link_httplib target)
  target_link_libraries(${target} PRIVATE PkgConfig::HTTPLIB)
  if(ORVANE_SANITIZE MATCHES "thread")
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/ThreadSanitizerDefaults.cpp)
  endif()
endfunction()
