// Documents whose parts are many: the time that they take is bounded.
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <string_view>
#include <system_error>

#include "tests/i2c/dimm_table_test.h"

namespace {

class DimmTableEffort : public CDimmTableTest {
  protected:
    // Parses in a child that may take half a minute of processor time: a parser
    // that would take many fails, however busy the machine is.
    void ExpectAnEnd(const std::string& xml) { ExitOf(xml); }
    void ExpectARefusal(const std::string& xml) { EXPECT_EQ(ExitOf(xml), XML_FORMAT_ERROR); }
    // So many things, each made from its number.
    template <class Thing>
    static std::string Many(int count, const Thing& thing) {
        std::string all;
        for (int i = 0; i < count; ++i) {
            all += thing(std::to_string(i));
        }
        return all;
    }

    static constexpr int MILLION = 1000000;
    static constexpr int MODULES = 60000;  // a table that is only large

  private:
    static constexpr int NO_FAILURE = 100;

    // Why there is no table, by way of the child's exit status.
    int ExitOf(const std::string& xml) {
        const std::string file = Write("table.xml", xml).string();
        const pid_t child = ::fork();
        if (child < 0) {
            throw std::system_error(errno, std::generic_category(), "fork");
        }
        if (child == 0) {
            itimerval limit{};
            limit.it_value.tv_sec = 30;
            ::setitimer(ITIMER_VIRTUAL, &limit, nullptr);
            const std::optional<Xml_Exceptions> failure = FailureOfFile(file);
            ::_exit(failure.has_value() ? static_cast<int>(*failure) : NO_FAILURE);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status)) << ::strsignal(WTERMSIG(status));
        return WEXITSTATUS(status);
    }
};

TEST_F(DimmTableEffort, IsBoundedForAttributes) {
    ExpectAnEnd(Document(Required() + "<a" +
                         Many(MILLION, [](const std::string& i) { return " a" + i + "=''"; }) +
                         "/>\n"));
}

TEST_F(DimmTableEffort, IsBoundedForNamespaces) {
    ExpectAnEnd(Document(
        Required() + "<a" +
        Many(MILLION, [](const std::string& i) { return " xmlns:a" + i + "='u:" + i + "'"; }) +
        "/>\n"));
}

TEST_F(DimmTableEffort, IsBoundedForAttributesThatAreDeclared) {
    ExpectAnEnd(Document(
        Many(MILLION, [](const std::string& i) { return "<!ATTLIST a a" + i + " CDATA ''>\n"; }),
        Required()));
}

TEST_F(DimmTableEffort, IsBoundedForValuesOfAnAttribute) {
    ExpectAnEnd(Document("<!ATTLIST a a (x" +
                             Many(MILLION, [](const std::string& i) { return "|a" + i; }) +
                             ") #IMPLIED>",
                         Required()));
}

TEST_F(DimmTableEffort, IsBoundedForEntities) {
    ExpectAnEnd(
        Document(Many(MILLION, [](const std::string& i) { return "<!ENTITY a" + i + " 'x'>\n"; }),
                 Required()));
}

TEST_F(DimmTableEffort, IsBoundedForAttributesThatEachElementHas) {
    ExpectAnEnd(Document(
        Many(5000, [](const std::string& i) { return "<!ATTLIST a a" + i + " CDATA ''>\n"; }),
        Required() + Many(100000, [](const std::string&) { return "<a/>"; }) + "\n"));
}

TEST_F(DimmTableEffort, IsBoundedForParameterEntities) {
    std::string declarations = "<!ENTITY % l0 \"<!ENTITY x 'lol'>\">\n";
    for (int level = 1; level <= 9; ++level) {
        const std::string below = "&#37;l" + std::to_string(level - 1) + ";";
        declarations += "<!ENTITY % l" + std::to_string(level) + " \"" +
                        Many(10, [&](const std::string&) { return std::string_view(below); }) +
                        "\">\n";
    }
    ExpectARefusal(Document(declarations + "%l9;", Required()));
}

TEST_F(DimmTableEffort, IsBoundedForDeclarationsThatAreRepeated) {
    const std::string names =
        Many(6000, [](const std::string& i) { return (i == "0" ? "n" : "|n") + i; });
    ExpectAnEnd(Document("<!ENTITY % p \"<!ATTLIST e b (" + names + ") #IMPLIED>\">\n" +
                             Many(10000, [](const std::string&) { return "%p;\n"; }),
                         Required()));
}

TEST_F(DimmTableEffort, IsBoundedForNames) {
    ExpectAnEnd(
        Document(Required() + Many(MILLION, [](const std::string& i) { return "<n" + i + "/>"; })));
}

TEST_F(DimmTableEffort, IsBoundedForInstructions) {
    ExpectAnEnd(Document(Required() +
                         Many(MILLION, [](const std::string& i) { return "<?n" + i + "?>"; })));
}

TEST_F(DimmTableEffort, GrowsWithTheModulesAlone) {
    ExpectAnEnd(Document(Header() + Many(MODULES, [](const std::string& i) {
                             return Module(i, i) + RegisterSet(Pair(i, i));
                         })));
}

TEST_F(DimmTableEffort, GrowsWithTheRegistersAlone) {
    ExpectAnEnd(Document(
        Required() + RegisterSet(Many(MODULES, [](const std::string& i) { return Pair(i, i); }))));
}

TEST_F(DimmTableEffort, GrowsWithTheRegisterSetsAlone) {
    ExpectAnEnd(Document(
        Required() + Many(MODULES, [](const std::string& i) { return RegisterSet(Pair(i, i)); })));
}

TEST_F(DimmTableEffort, ReadsALongHeaderOnce) {
    const std::string zeros(4000000, '0');
    ExpectAnEnd(Document(Element("dimm_table_version", zeros) + Element("signature", zeros) +
                         Many(MODULES, [](const std::string& i) { return Module(i, i); })));
}

}  // namespace
