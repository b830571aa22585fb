// The codes by which the whole Zyl layer reports: 0 is success, every failure is negative. Generated code is
// compiled with the numbers, so none ever changes its meaning.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_ERROR_H
#define ORVANE_SERIALIZER_ZYL_ZYL_ERROR_H

// The one table of codes, from 0 downwards without a gap: X(code, name, text). The texts are part of the interface,
// spelling included. The codes below -31 belong to the tagged form, which generated classes alone implement. A new code
// goes to the end.
#define ORVANE_ZYL_ERRORS(X)                                                                        \
    X(0, ZYL_NO_ERROR, "no error")                                                                  \
    X(-1, ZYL_SHORT_BUFFER_TO_WRITE, "available free space in buffer is not enough")                \
    X(-2, ZYL_SHORT_BUFFER_TO_READ, "available data in buffer is not enough")                       \
    X(-3, ZYL_STRING_TOO_LONG, "string length surpass defined size")                                \
    X(-4, ZYL_STRING_TOO_SHORT, "string length smaller than min string length")                     \
    X(-5, ZYL_STRING_SIZE_CONFLICT, "string sizeinfo inconsistent with real length")                \
    X(-6, ZYL_REFER_IS_MINUS, "reffer value can not be minus")                                      \
    X(-7, ZYL_REFER_TOO_BIG, "reffer value bigger than count or size")                              \
    X(-8, ZYL_ARGUMENT_IS_NULL, "pointer-type argument is NULL")                                    \
    X(-9, ZYL_CUT_VERSION_TOO_SMALL, "cut-version is smaller than base-version")                    \
    X(-10, ZYL_CUT_VERSION_CONFLICT, "cut-version not covers entry refered by versionindicator")    \
    X(-11, ZYL_INET_NTOA_FAILED, "inet_ntoa failed when parse zyl_ip_t")                            \
    X(-12, ZYL_INVALID_IP, "value variable of zyl_ip_t is invalid")                                 \
    X(-13, ZYL_INVALID_TIME, "value variable of zyl_time_t is invalid")                             \
    X(-14, ZYL_INVALID_DATE, "value variable of zyl_date_t is invalid")                             \
    X(-15, ZYL_INVALID_DATETIME, "value variable of zyl_datetime_t is invalid")                     \
    X(-16, ZYL_LOCALTIME_FAILED, "function 'localtime' or 'localtime_r' failed")                    \
    X(-17, ZYL_INVALID_HEX_LENGTH, "invalid hex-string length, must be an even number")             \
    X(-18, ZYL_INVALID_HEX_FORMAT, "invalid hex-string format, each character must be a hex-digit") \
    X(-19, ZYL_PARAMETER_IS_NULL, "NULL pointer as parameter")                                      \
    X(-20, ZYL_NET_CUT_VERSION_INVALID, "cutVer from net-msg not in [BASEVERSION, CURRVERSION]")    \
    X(-21, ZYL_VALUE_OUT_OF_RANGE, "string-formated value underflow or overflow")                   \
    X(-22, ZYL_OPEN_TO_READ_FAILED, "failed to open file with read-mode")                           \
    X(-23, ZYL_OPEN_TO_WRITE_FAILED, "failed to open file with write-mode")                         \
    X(-24, ZYL_READ_FILE_FAILED, "failed to read data from file")                                   \
    X(-25, ZYL_WRITE_FILE_FAILED, "failed to write data into file")                                 \
    X(-26, ZYL_ALLOCATE_FAILED, "failed to allocate heap memory")                                   \
    X(-27, ZYL_PARSE_XML_FAILED, "failed to parse XML-formated data")                               \
    X(-28, ZYL_UNEXPECTED_XML_ROOT, "XML root-node is NOT what expected")                           \
    X(-29, ZYL_PARSE_NUMBER_FAILED, "failed to parse integer or float from string")                 \
    X(-30, ZYL_UNDEFINED_MACRO, "specified macro name has NOT been defined")                        \
    X(-31, ZYL_NOT_IMPLEMENTED, "function has NOT been implemented by derived class")               \
    X(-32, ZYL_BAD_TLV_MAGIC, "bad tlv encode magic")                                               \
    X(-33, ZYL_INVALID_SELECTOR, "invalid selector")                                                \
    X(-34, ZYL_UNMATCHED_LENGTH, "unmatched length")                                                \
    X(-35, ZYL_UNKNOWN_TYPE_ID, "unknown type id")                                                  \
    X(-36, ZYL_LOST_REQUIRED_FIELD, "at least 1 required field been lost")                          \
    X(-37, ZYL_NULL_ARRAY, "null array shouldn't be packed")

namespace Quern {

class ZylError {
public:
    enum ErrorType : int {
#define ORVANE_ZYL_ERROR_NAME(code, name, text) name = code,
        ORVANE_ZYL_ERRORS(ORVANE_ZYL_ERROR_NAME)
#undef ORVANE_ZYL_ERROR_NAME
    };

    // The text of a code: "no error" above 0, "unknown error" below the table. Static storage, never null.
    static const char* getErrorString(ErrorType code);
    // For the codes as the operations return them.
    static const char* getErrorString(int code) {
        return getErrorString(static_cast<ErrorType>(code));
    }
};

}  // namespace Quern

#endif
