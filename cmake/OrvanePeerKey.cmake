# The public key of the peer that logs of mode 2 and encrypted INI files are written for: 128 hexadecimal digits, the
# coordinates X then Y of a secp256k1 point. This default is a development key, and its private half is public
# (Examples/Keys/development-log.key): a deployment sets its own and keeps the private half where its files are read.
set(ORVANE_PEER_PUBLIC_KEY
    095cec2264966ed7a2048391f7be04b496d708decdb037b2f2f8371852bfcb9b0e9ec2f8453e5739ebf71430ef41134c1a2e6ba1360dd8af999ec6fd8c411375
    CACHE STRING "Public key that logs and INI files are encrypted for, 128 hexadecimal digits")
string(LENGTH "${ORVANE_PEER_PUBLIC_KEY}" digits)
if(NOT digits EQUAL 128 OR NOT ORVANE_PEER_PUBLIC_KEY MATCHES "^[0-9A-Fa-f]+$")
  message(FATAL_ERROR "ORVANE_PEER_PUBLIC_KEY must be 128 hexadecimal digits, not \"${ORVANE_PEER_PUBLIC_KEY}\"")
endif()
# A point that is none gives a game without a key, and that one writes its "encrypted" logs in the clear without a word.
include(${CMAKE_CURRENT_LIST_DIR}/OrvaneCurve.cmake)
orvane_is_curve_point(is_point "${ORVANE_PEER_PUBLIC_KEY}")
if(NOT is_point)
  message(FATAL_ERROR "ORVANE_PEER_PUBLIC_KEY is no public key (no point of secp256k1): a digit of "
                      "\"${ORVANE_PEER_PUBLIC_KEY}\" must be wrong. orvane-log --keygen prints one.")
endif()
