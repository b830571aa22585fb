// What every request tells of the application, the user, the device and its plugins: "com_params". The configuration
// and the upload protocol have it in common. Any thread.
#ifndef ORVANE_TOOLS_DEVSERVER_COM_PARAMS_H
#define ORVANE_TOOLS_DEVSERVER_COM_PARAMS_H

#include <json/json.h>

#include <string>

#include "DevServer/Message.h"

namespace OrvaneDevServer {

// Reads an object that the compact writer has written, and reports where the text is another than it would write. Null
// if the text is no JSON object. `name` is what reports call the parameter.
Json::Value ReadCompactObject(const std::string& name, const std::string& text, Problems& problems);

// Reads the common parameters and reports what they break. `device` receives "did", if there is one. Null if they
// cannot be read.
Json::Value ReadComParams(const std::string& text, std::string& device, Problems& problems);

}  // namespace OrvaneDevServer

#endif
