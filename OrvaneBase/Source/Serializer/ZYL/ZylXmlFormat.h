// The two layouts of the XML form.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_XML_FORMAT_H
#define ORVANE_SERIALIZER_ZYL_ZYL_XML_FORMAT_H

namespace Quern {

// 1 is the attribute form; any other value, not only the named one, is the node form.
enum ZylXmlFormat : int {
    ZYL_XML_NODE = 0,       // a simple field is an element with text
    ZYL_XML_ATTRIBUTE = 1,  // a simple field is an element that closes itself
};

}  // namespace Quern

#endif
