#include <sys/stat.h>

#include "Tools/DevServer/Requests.h"

namespace OrvaneDevServer {
namespace {

class DevServerModules : public ServedTest {
protected:
    std::string For(const std::string& device) { return WriteCompact(modules.For(device)); }

    ModuleFolder modules{folder.Path()};
};

TEST_F(DevServerModules, AreMergedKeyByKeyForADevice) {
    folder.Write("modules/A.json", R"({"x":1,"y":"all"})");
    folder.Write("modules/B.json", R"({"z":2})");
    folder.Write("devices/D1/A.json", R"({"y":"one"})");
    folder.Write("devices/D1/C.json", R"({"own":1})");
    folder.Write("devices/D10/A.json", R"({"y":"ten"})");
    modules.Refresh();
    EXPECT_EQ(For("D2"), "{\"A\":{\"x\":1,\"y\":\"all\"},\"B\":{\"z\":2}}\n");
    EXPECT_EQ(For("D1"), "{\"A\":{\"x\":1,\"y\":\"one\"},\"B\":{\"z\":2},\"C\":{\"own\":1}}\n");
    for (const char* hostile : {"", ".", "..", "../devices/D1", "D1/", "D1/../D1", "/"})
        EXPECT_EQ(For(hostile), For("D2")) << hostile;
    EXPECT_EQ(WriteCompact(modules.All()["devices"]["D10"]), "{\"A\":{\"y\":\"ten\"}}\n");
}

TEST_F(DevServerModules, FollowEveryEdit) {
    for (char value = '0'; value <= '9'; ++value) {  // of one length, and as fast as can be
        folder.Write("modules/A.json", std::string("{\"x\":") + value + "}");
        EXPECT_THAT(modules.Refresh(), ElementsAre("modules/A.json is taken, 1 key"));
        EXPECT_EQ(For(""), std::string("{\"A\":{\"x\":") + value + "}}\n");
    }
    EXPECT_THAT(modules.Refresh(), IsEmpty());
    folder.Write("modules/A.json", R"({"x":)");  // in the middle of an edit
    EXPECT_THAT(modules.Refresh(), ElementsAre(HasSubstr("its last good content stays")));
    EXPECT_THAT(modules.Refresh(), IsEmpty());
    EXPECT_EQ(For(""), "{\"A\":{\"x\":9}}\n");
    std::filesystem::remove(folder / "modules/A.json");
    EXPECT_THAT(modules.Refresh(), ElementsAre("modules/A.json is gone"));
    EXPECT_EQ(For(""), "{}\n");
}

TEST_F(DevServerModules, BearHostileFiles) {
    const std::string kFiles[] = {
        "",      "[1]",     std::string(200000, '['), R"({"a":1,"a":2})",
        "{} {}", "{} // x", std::string("\0", 1),     "{\"a\":\"" + std::string(kMostModuleBytes, 'x') + "\"}"};
    for (size_t i = 0; i < std::size(kFiles); ++i)
        folder.Write("modules/" + std::to_string(i) + ".json", kFiles[i]);
    mkfifo((folder / "modules/pipe.json").c_str(), 0600);  // reading it would wait for a writer
    std::filesystem::create_directory(folder / "modules/folder.json");
    std::filesystem::create_symlink("/nowhere", folder / "modules/link.json");
    folder.Write("modules/.hidden.json", "{\"a\":1}");
    folder.Write("modules/note.txt", "{\"a\":1}");
    const std::vector<std::string> notes = modules.Refresh();
    EXPECT_EQ(notes.size(), std::size(kFiles) + 3);
    EXPECT_THAT(notes, testing::Each(HasSubstr(" is left out: ")));
    EXPECT_EQ(For(""), "{}\n");

    folder.Write("modules/odd.json", "{\"b\":true,\"s\":\"\xFF\",\"r\":1.5,\"i\":1}");
    const std::vector<std::string> odd = modules.Refresh();
    EXPECT_THAT(odd, ElementsAre("modules/odd.json is taken, 4 keys",
                                 HasSubstr("the client will drop \"b\", a boolean; it keeps strings and integers"),
                                 HasSubstr("the client will drop \"r\", a real number")));
    EXPECT_EQ(Parsed(For(""))["odd"]["b"], Json::Value(true));  // sent as it stands
}

TEST_F(DevServerModules, TheRuleIdRisesWithEachChangeAndAcrossStarts) {
    const std::string path = folder / "rule_id.json";
    Json::Value served;
    std::string problem;
    {
        RuleId ruleId(path);
        EXPECT_EQ(ruleId.Of(served, problem), 1);
        EXPECT_EQ(ruleId.Of(served, problem), 1);
        served["A"]["x"] = 1;
        EXPECT_EQ(ruleId.Of(served, problem), 2);
    }
    EXPECT_EQ(RuleId(path).Of(served, problem), 2);
    served["A"]["x"] = 2;  // edited while the server was down
    EXPECT_EQ(RuleId(path).Of(served, problem), 3);
    EXPECT_EQ(problem, "");
    for (const char* damaged : {"", "[]", R"({"rule_id":-5})", R"({"rule_id":1e99})", "{"}) {
        folder.Write("rule_id.json", damaged);
        EXPECT_EQ(RuleId(path).Of(served, problem), 1) << damaged;
    }
    EXPECT_EQ(RuleId(folder / "nowhere/rule_id.json").Of(served, problem), 1);
    EXPECT_THAT(problem, HasSubstr("the rule id cannot be kept"));
}

}  // namespace
}  // namespace OrvaneDevServer
