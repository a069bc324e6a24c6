// Nothing of a DIMM table comes from the network, whoever asks for it.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <system_error>
#include <thread>

#include "tests/i2c/dimm_table_test.h"

namespace {

using testing::IsEmpty;

// A server that counts its calls and hangs up on each, so that nobody waits.
class CListener {
  public:
    CListener() : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof m_address;
        if (m_socket < 0 || ::bind(m_socket, Address(), size) != 0 || ::listen(m_socket, 16) != 0 ||
            ::getsockname(m_socket, Address(), &size) != 0) {
            throw std::system_error(errno, std::generic_category(), "listener");
        }
        m_server = std::thread([this] { Serve(); });
    }
    ~CListener() {
        ::shutdown(m_socket, SHUT_RDWR);
        m_server.join();
        ::close(m_socket);
    }
    CListener(const CListener&) = delete;
    CListener& operator=(const CListener&) = delete;

    std::string Url(const std::string& scheme, const std::string& path) const {
        return scheme + "://127.0.0.1:" + std::to_string(ntohs(m_address.sin_port)) + "/" + path;
    }
    // A call is counted before its caller notices that it has ended.
    int Calls() const { return m_calls; }
    // Calls, and waits for the end of the call.
    void Call() {
        const int caller = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        char byte = 0;
        if (::connect(caller, Address(), sizeof m_address) != 0 ||
            ::recv(caller, &byte, 1, 0) != 0) {
            throw std::system_error(errno, std::generic_category(), "caller");
        }
        ::close(caller);
    }

  private:
    sockaddr* Address() { return reinterpret_cast<sockaddr*>(&m_address); }
    void Serve() {
        for (int call = -1; (call = ::accept(m_socket, nullptr, nullptr)) >= 0;) {
            ++m_calls;
            ::shutdown(call, SHUT_WR);
            ::close(call);
        }
    }

    const int m_socket;
    sockaddr_in m_address{};
    std::atomic<int> m_calls{0};
    std::thread m_server;
};

class DimmTableNetwork : public CDimmTableTest {
  protected:
    static constexpr const char* SCHEMES[] = {"http", "ftp", "HTTP"};

    CListener m_listener;
};

TEST_F(DimmTableNetwork, IsHeardWhenItIsCalled) {
    m_listener.Call();
    EXPECT_EQ(m_listener.Calls(), 1);
}

TEST_F(DimmTableNetwork, IsNoPlaceForATable) {
    for (const char* scheme : SCHEMES) {
        EXPECT_EQ(FailureOfFile(m_listener.Url(scheme, "table.xml")), NO_XML_FILE_FOUND) << scheme;
    }
    EXPECT_THAT(Errors(), IsEmpty());
    EXPECT_EQ(m_listener.Calls(), 0);
}

TEST_F(DimmTableNetwork, IsNotAskedForAnEntity) {
    for (const char* scheme : SCHEMES) {
        Parse(Document("<!ENTITY far SYSTEM '" + m_listener.Url(scheme, "far.ent") + "'>",
                       Required() + Element("note", "&far;")));
        EXPECT_EQ(m_table.num_Entries, 1U) << scheme;
    }
    EXPECT_EQ(m_listener.Calls(), 0);
}

TEST_F(DimmTableNetwork, IsNotAskedForDeclarations) {
    for (const char* scheme : SCHEMES) {
        const std::string url = m_listener.Url(scheme, "table.dtd");
        Parse("<!DOCTYPE t SYSTEM '" + url + "'>\n<t>\n" + Required() + "</t>\n");
        EXPECT_EQ(m_table.num_Entries, 1U) << scheme;
        Parse("<!DOCTYPE t PUBLIC '-//nobody//table' '" + url + "'>\n<t>\n" + Required() +
              "</t>\n");
        EXPECT_EQ(m_table.num_Entries, 1U) << scheme;
        Parse(Document("<!ENTITY % all SYSTEM '" + url + "'>\n%all;", Required()));
        EXPECT_EQ(m_table.num_Entries, 1U) << scheme;
    }
    EXPECT_EQ(m_listener.Calls(), 0);
}

TEST_F(DimmTableNetwork, IsNotAskedForASchemaOrAnInclusion) {
    const std::string url = m_listener.Url("http", "x");
    Parse("<?xml-model href='" + url +
          "'?>\n<t xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'"
          " xsi:noNamespaceSchemaLocation='" +
          url + "'>\n" + Required() +
          "<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' href='" + url + "'/>\n</t>\n");
    EXPECT_EQ(m_table.num_Entries, 1U);
    EXPECT_EQ(m_listener.Calls(), 0);
}

}  // namespace
