#include "host/shell/report/json_report.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "tests/host/shell/shell_tree.h"
#include "tests/host/shell/text_file.h"

namespace {

using testing::HasSubstr;

class JsonReport : public ShellTest {
  protected:
    JsonReport() { m_shell.Recorder().AddObserver(m_report); }

    // The objects that a line gives.
    std::vector<nlohmann::json> ObjectsOf(const std::string& line) {
        Run(line);
        std::vector<nlohmann::json> objects;
        std::istringstream lines(m_file.Written());
        for (std::string text; std::getline(lines, text);) {
            objects.push_back(nlohmann::json::parse(text));
        }
        return objects;
    }

    CTextFile m_file;
    CJsonReport m_report{m_file.Get()};
};

TEST_F(JsonReport, PrintsOneObjectForACommand) {
    const std::vector<nlohmann::json> objects = ObjectsOf("/dev/add 0x10 2");
    ASSERT_EQ(objects.size(), 1U);
    nlohmann::json object = objects[0];
    EXPECT_THAT(object["began"].get<std::string>(),
                testing::MatchesRegex("....-..-..T..:..:..[.]...Z"));
    EXPECT_GT(object["duration_ms"].get<double>(), 0);
    object.erase("began");
    object.erase("duration_ms");
    EXPECT_EQ(object, nlohmann::json::parse(R"({
        "schema": 1, "command": "/dev/add 0x10 2", "path": "/dev/add", "arguments": ["0x10", "2"],
        "origin": null, "job": null,
        "result": {"status": "passed", "exit": 0, "code": 0, "name": "SUCCESS"},
        "outputs": [{"name": "sum", "type": "uint32", "value": 18, "text": "18"},
                    {"name": "note", "type": "string", "value": "done", "text": "done"}],
        "log": [{"type": "print", "level": 0, "path": "/dev/add", "text": "adding 16 and 2"}],
        "log_left_out": 0, "errors": []})"));
}

TEST_F(JsonReport, TellsAFailureFromAnError) {
    EXPECT_EQ(ObjectsOf("/dev/fail").at(0)["result"]["status"], "failed");
    EXPECT_EQ(ObjectsOf("/dev/fail").at(0)["result"]["name"], "ERR_FAIL");
    EXPECT_EQ(ObjectsOf("/dev/check skip").at(0)["result"]["status"], "skipped");
    EXPECT_EQ(ObjectsOf("/dev/check wait").at(0)["result"]["exit"], 3);
}

TEST_F(JsonReport, TellsThatALineWasRefused) {
    const nlohmann::json object = ObjectsOf("nope 1").at(0);
    EXPECT_EQ(
        object["result"],
        nlohmann::json::parse(R"({"status": "usage", "exit": 2, "code": null, "name": null})"));
    EXPECT_EQ(object["path"], nullptr);
    EXPECT_THAT(object["errors"].at(0).get<std::string>(), HasSubstr("there is no \"nope\""));
}

TEST_F(JsonReport, PrintsAnObjectForEachCommandOfALine) {
    EXPECT_EQ(ObjectsOf("/dev/add 1; /dev/add 2 && /dev/fail").size(), 3U);
}

TEST_F(JsonReport, KeepsBytesThatAreNoTextFromSpoilingIt) {
    const nlohmann::json object = ObjectsOf("/dev/check '\xff\xfe'").at(0);
    EXPECT_EQ(object["command"], "/dev/check \\xff\\xfe");
    EXPECT_EQ(object["arguments"].at(0), "\xef\xbf\xbd\xef\xbf\xbd");
}

TEST_F(JsonReport, KnowsThatItsReaderIsGone) {
    std::FILE* full = std::fopen("/dev/full", "w");
    CJsonReport report(full);
    EXPECT_FALSE(report.IsLost());
    report.OnEnd({});
    EXPECT_TRUE(report.IsLost());
    std::fclose(full);
}

}  // namespace
