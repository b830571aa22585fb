/* What a game's script layer does with settings: it reads those of the game's own module, here from the manifest of the
 * example game, and holds files of settings by their handles. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "Orvane/OrvaneCore.h"
#include "Support/Require.h"

static void OnRefreshed(const char* keys) {
    fprintf(stderr, "unexpected: %s\n", keys);
    exit(1);
}

int main(void) {
    quern_remoteconfig_SetCallback(OnRefreshed);
    REQUIRE(quern_remoteconfig_GetInt("LogMode", 1) == 2);
    REQUIRE(quern_remoteconfig_GetLong("LogMode", 1) == 2);
    REQUIRE(quern_remoteconfig_GetLong("none", -5000000000) == -5000000000);
    REQUIRE(quern_remoteconfig_GetBool("LogMode", false));
    REQUIRE(quern_remoteconfig_GetDouble("LogMode", 0.5) == 0.5); /* a number is no text */
    char text[8] = "~~~~~~~";
    REQUIRE(!quern_remoteconfig_GetString("LogLevel", text, 5, "x") && text[0] == '~');
    REQUIRE(quern_remoteconfig_GetString("LogLevel", text, sizeof text, "x"));
    REQUIRE(strcmp(text, "Debug") == 0);

    orvane_config_file* const standard = OrvaneCore_GetDefaultHandler();
    orvane_config_file* file = OrvaneCore_NewConfigFile("script");
    REQUIRE(standard && file && file != standard);
    OrvaneCore_DeleteConfigFile(&file);
    REQUIRE(!file && OrvaneCore_GetDefaultHandler() == standard);
    quern_remoteconfig_SetCallback(NULL);
    return 0;
}
