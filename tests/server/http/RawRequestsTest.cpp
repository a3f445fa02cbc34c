// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ServerUnderTest.h"

#include <vector>

using namespace std::string_literals;

namespace {

// The request that the handler gets: one line for each non-empty text.
boost::asio::awaitable<beacond::Response> Describe(const beacond::Request& request)
{
    constexpr const char* kMethods[] = {"GET", "HEAD", "POST", "other"};
    beacond::Response response;
    response.body = kMethods[static_cast<std::size_t>(request.method)];
    response.body += " " + request.path;
    for (const auto& [name, text] : {std::pair("?", request.query), std::pair(" type=", request.contentType),
                                     std::pair(" body=", request.body)}) {
        response.body += text.empty() ? "" : name + text;
    }
    co_return response;
}

// The header of the answer, without Date.
std::string Header(std::size_t length, const std::string& connection)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Length: " +
           std::to_string(length) + "\r\n" + connection + "\r\n";
}

std::string Kept(const std::string& body)
{
    return Header(body.size(), "") + body;
}

std::string Last(const std::string& body)
{
    return Header(body.size(), "Connection: close\r\n") + body;
}

std::string Refused(const std::string& status)
{
    return "HTTP/1.1 " + status + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
}

const std::string kBad = Refused("400 Bad Request");
const std::string kContinue = "HTTP/1.1 100 Continue\r\n\r\n";

struct Row
{
    const char* name;
    std::string request;
    std::string answer;
};

// A GET of the target in the form of the desktop program.
std::string Get(const std::string& target)
{
    return "GET " + target +
           " HTTP/1.1\r\nHost: h\r\nUser-Agent: DuskBeacon/1.0.5\r\nAccept-Encoding: gzip\r\n\r\n";
}

std::string Post(const std::string& fields, const std::string& rest)
{
    return "POST /s HTTP/1.1\r\nHost: h\r\n" + fields + "\r\n" + rest;
}

void ExpectAnswers(const std::vector<Row>& rows)
{
    const ServerUnderTest under(Describe);
    for (const Row& row : rows) {
        RawClient client = under.Connect();
        client.Send(row.request);
        client.EndSending();
        EXPECT_EQ(WithoutDates(client.ReadToEnd()), row.answer) << row.name;
    }
    // Send it again byte by byte, so that a packet may end after every byte.
    for (const Row& row : rows) {
        RawClient client = under.Connect();
        for (const char& byte : row.request) {
            if (!client.Send({&byte, 1})) {
                break;
            }
        }
        client.EndSending();
        EXPECT_EQ(WithoutDates(client.ReadToEnd()), row.answer) << row.name << ", a byte at a time";
    }
}

// A request with a header of this length.
std::string OfLength(std::size_t length)
{
    const std::string empty = Get("/?");
    return Get("/?" + std::string(length - empty.size(), 'x'));
}

} // namespace

TEST(RawRequests, everyByteOfATarget_arrivesUnchanged)
{
    std::string query;
    for (int byte = 0x21; byte <= 0xFF; ++byte) {
        if (byte != 0x7F) {
            query += static_cast<char>(byte);
        }
    }
    ExpectAnswers({
        {"in the query", Get("/p?" + query), Kept("GET /p?" + query)},
        {"in the path", Get("/\"<>\\^{|}[]#&+%\xD9\x85?q"), Kept("GET /\"<>\\^{|}[]#&+%\xD9\x85?q")},
        {"the first question mark", Get("/p??a?b"), Kept("GET /p??a?b")},
        {"no query", Get("/p?"), Kept("GET /p")},
        {"number sign first", Get("/p#a?b"), Kept("GET /p#a?b")},
        {"escapes", Get("/%41?%41+%zz%"), Kept("GET /%41?%41+%zz%")},
        {"dots", Get("/../a//b/."), Kept("GET /../a//b/.")},
        {"space", Get("/p?a b"), kBad},
        {"NUL", Get("/p?a\0b"s), kBad},
        {"DEL", Get("/p?a\x7F"), kBad},
        {"tab", Get("/p?a\tb"), kBad},
    });
}

TEST(RawRequests, targetsAndMethods_areAnsweredOrRefused)
{
    ExpectAnswers({
        {"absolute", Get("http://g:80/p?q"), Kept("GET /p?q")},
        {"absolute without a path", Get("HTTPS://g?q"), Kept("GET /?q")},
        {"absolute without a host", Get("http:///p"), kBad},
        {"another scheme", Get("ftp://g/p"), kBad},
        {"relative", Get("p"), kBad},
        {"asterisk", "OPTIONS * HTTP/1.1\r\nHost: h\r\n\r\n", kBad},
        {"tunnel", "CONNECT g:443 HTTP/1.1\r\nHost: h\r\n\r\n", kBad},
        {"another method", "PATCH /p HTTP/1.1\r\nHost: h\r\n\r\n", Kept("other /p")},
        {"lower case", "get /p HTTP/1.1\r\nHost: h\r\n\r\n", Kept("other /p")},
        {"HEAD", "HEAD /p HTTP/1.1\r\nHost: h\r\n\r\n", Header(7, "")},
        {"no method", " /p HTTP/1.1\r\nHost: h\r\n\r\n", kBad},
        {"two spaces", "GET  /p HTTP/1.1\r\nHost: h\r\n\r\n", kBad},
        {"no version", "GET /p\r\n\r\n", kBad},
        {"HTTP/2.0", "GET /p HTTP/2.0\r\nHost: h\r\n\r\n", kBad},
        {"HTTP/1.2", "GET /p HTTP/1.2\r\nHost: h\r\n\r\n", kBad},
        {"lower case version", "GET /p http/1.1\r\nHost: h\r\n\r\n", kBad},
        {"a TLS client", "\x16\x03\x01\x00\x05\r\n\r\n"s, kBad},
        {"an offer of HTTP/2", "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", kBad},
    });
}

TEST(RawRequests, connection_isKeptOrClosed)
{
    const std::string keepAlive = "Connection: keep-alive\r\n";
    ExpectAnswers({
        {"nothing", "", ""},
        {"half a request", "GET /p HTTP/1.1\r\nHost: h\r\n", ""},
        {"pipelined", Get("/a") + Get("/b") + Get("/c"), Kept("GET /a") + Kept("GET /b") + Kept("GET /c")},
        {"more than a buffer of them", Repeated(Get("/a"), 300), Repeated(Kept("GET /a"), 300)},
        {"empty lines before", "\r\n\r\n" + Get("/a") + "\r\n" + Get("/b"), Kept("GET /a") + Kept("GET /b")},
        {"close", "GET /a HTTP/1.1\r\nHost: h\r\nConnection: x, Close\r\n\r\n" + Get("/b"), Last("GET /a")},
        {"HTTP/1.0", "GET /a HTTP/1.0\r\n\r\n" + Get("/b"), Last("GET /a")},
        {"HTTP/1.0, kept", "GET /a HTTP/1.0\r\nConnection: Keep-Alive\r\n\r\n" + Get("/b"),
         Header(6, keepAlive) + "GET /a" + Kept("GET /b")},
        {"HEAD, kept", "HEAD /a HTTP/1.1\r\nHost: h\r\n\r\n" + Get("/b"), Header(7, "") + Kept("GET /b")},
        {"refused", "GET /a\r\n\r\n" + Get("/b"), kBad},
        {"upgrade", "GET /a HTTP/1.1\r\nHost: h\r\nConnection: Upgrade\r\nUpgrade: h2c\r\n\r\n",
         Kept("GET /a")},
    });
}

TEST(RawRequests, headerFields_areAcceptedOrRefused)
{
    const auto with = [](const std::string& fields) { return "GET /p HTTP/1.1\r\n" + fields + "\r\n"; };
    ExpectAnswers({
        {"known fields", with("HOST:h\r\ncontent-type: \t a/b \t\r\nX-Any:\r\n"), Kept("GET /p type=a/b")},
        {"no Host", with(""), kBad},
        {"empty Host", with("Host:\r\n"), Kept("GET /p")},
        {"two Hosts", with("Host: h\r\nHost: h\r\n"), kBad},
        {"two Hosts in HTTP/1.0", "GET /p HTTP/1.0\r\nHost: h\r\nHost: g\r\n\r\n", kBad},
        {"a path in Host", with("Host: h/p\r\n"), kBad},
        {"a user in Host", with("Host: u@h\r\n"), kBad},
        {"IPv6 Host", with("Host: [::1]:8750\r\n"), Kept("GET /p")},
        {"bare LF at the end of a field", with("Host: h\nX: y\r\n"), kBad},
        {"bare LF everywhere", "GET /p HTTP/1.1\nHost: h\n\n", kBad},
        {"bare CR in a field", with("Host: h\rX: y\r\n"), kBad},
        {"CR CR LF", with("Host: h\r\r\n"), kBad},
        {"NUL in a value", with("Host: h\r\nX: a\0b\r\n"s), kBad},
        {"NUL in a name", with("Host: h\r\nX\0: a\r\n"s), kBad},
        {"space before the colon", with("Host : h\r\n"), kBad},
        {"no colon", with("Host: h\r\nX\r\n"), kBad},
        {"no name", with("Host: h\r\n: x\r\n"), kBad},
        {"a field that goes on", with("Host: h\r\nX: a\r\n b\r\n"), kBad},
        {"a field that goes on after nothing", with("Host: h\r\nX:\r\n\tb\r\n"), kBad},
        {"a first field that goes on", with(" X: a\r\nHost: h\r\n"), kBad},
        {"another expectation", with("Host: h\r\nExpect: other\r\n"), Refused("417 Expectation Failed")},
    });
}

TEST(RawRequests, bodies_inOnePieceOrMany_areReadAlike)
{
    const std::string form = "Content-Type: a/b\r\n";
    const std::string chunked = "Transfer-Encoding: chunked\r\n";
    const auto answer = [](const std::string& body) { return Kept("POST /s" + body); };
    ExpectAnswers({
        {"with a length", Post(form + "Content-Length: 3\r\n", "a\0b"s) + Get("/n"),
         answer(" type=a/b body=a\0b"s) + Kept("GET /n")},
        {"of HTTP/1.0", "POST /s HTTP/1.0\r\nContent-Length: 1\r\n\r\nx", Last("POST /s body=x")},
        {"empty", Post("Content-Length: 0\r\n", "") + Get("/n"), answer("") + Kept("GET /n")},
        {"without a length", Post("", Get("/n")), answer("") + Kept("GET /n")},
        {"cut off", Post("Content-Length: 3\r\n", "ab"), ""},
        {"chunked", Post(chunked, "1\r\na\r\nA;e=\"v\"\r\n0123456789\r\n0\r\n\r\n") + Get("/n"),
         answer(" body=a0123456789") + Kept("GET /n")},
        {"trailers", Post("Transfer-Encoding: Chunked\r\n", "0\r\nHost: g\r\nExpect: other\r\n\r\n"),
         answer("")},
        {"no size of a chunk", Post(chunked, "x\r\n\r\n"), kBad},
        {"a size too large to count", Post(chunked, "FFFFFFFFFFFFFFFFF\r\n\r\n"), kBad},
        {"a chunk longer than its size", Post(chunked, "1\r\nab\r\n0\r\n\r\n"), kBad},
        {"bare LF behind a size", Post(chunked, "1\na\r\n0\r\n\r\n"), kBad},
        {"length and coding", Post("Content-Length: 5\r\n" + chunked, "0\r\n\r\n"), kBad},
        {"coding and length", Post(chunked + "Content-Length: 5\r\n", "0\r\n\r\n"), kBad},
        {"two lengths", Post("Content-Length: 1\r\nContent-Length: 2\r\n", "ab"), kBad},
        {"one length twice", Post("Content-Length: 1\r\nContent-Length: 1\r\n", "a"), kBad},
        {"a list of lengths", Post("Content-Length: 1, 1\r\n", "a"), kBad},
        {"a signed length", Post("Content-Length: +1\r\n", "a"), kBad},
        {"a negative length", Post("Content-Length: -1\r\n", "a"), kBad},
        {"a hexadecimal length", Post("Content-Length: 0x1\r\n", "a"), kBad},
        {"an empty length", Post("Content-Length:\r\n", "a"), kBad},
        {"a length beyond 64 bits", Post("Content-Length: 18446744073709551617\r\n", "a"), kBad},
        {"chunked before identity", Post("Transfer-Encoding: chunked, identity\r\n", "0\r\n\r\n"), kBad},
        {"chunked twice", Post(chunked + chunked, "0\r\n\r\n"), kBad},
        {"gzip and chunked", Post("Transfer-Encoding: gzip, chunked\r\n", "0\r\n\r\n"), kBad},
        {"chunked with a control character", Post("Transfer-Encoding: \vchunked\r\n", "0\r\n\r\n"), kBad},
        {"an unknown coding", Post("Transfer-Encoding: xchunked\r\n", "0\r\n\r\n"), kBad},
        {"coding in HTTP/1.0", "POST /s HTTP/1.0\r\n" + chunked + "\r\n0\r\n\r\n", kBad},
        {"chunked GET", "GET /p HTTP/1.1\r\nHost: h\r\n" + chunked + "\r\n0\r\n\r\n", kBad},
        {"GET with a length", "GET /p HTTP/1.1\r\nHost: h\r\nContent-Length: 1\r\n\r\na", kBad},
        {"HEAD with a length", "HEAD /p HTTP/1.1\r\nHost: h\r\nContent-Length: 1\r\n\r\na", kBad},
        {"GET with the length 0", "GET /p HTTP/1.1\r\nHost: h\r\nContent-Length: 0\r\n\r\n", Kept("GET /p")},
        {"a body that is not read", "PUT /p HTTP/1.1\r\nHost: h\r\nContent-Length: 99999\r\n\r\nGET /x",
         Last("other /p")},
        {"continue", Post("Content-Length: 1\r\nExpect: 100-Continue\r\n", ""), kContinue},
        {"continue in HTTP/1.0", "POST /s HTTP/1.0\r\nContent-Length: 1\r\nExpect: 100-continue\r\n\r\n", ""},
        {"continue without a body", Post("Content-Length: 0\r\nExpect: 100-continue\r\n", ""), answer("")},
    });
}

TEST(RawRequests, sizes_areLimited)
{
    const std::string longest = OfLength(8192);
    const std::string target = longest.substr(4, longest.find(" HTTP") - 4);
    const std::string large(std::size_t{16} * 1024, 'x');
    const std::string tooLarge = Refused("413 Payload Too Large");
    ExpectAnswers({
        {"the longest header", longest + longest, Kept("GET " + target) + Kept("GET " + target)},
        {"a longer header", OfLength(8193), Refused("431 Request Header Fields Too Large")},
        {"a longer target", "GET /" + std::string(9000, 'x'), Refused("414 URI Too Long")},
        {"many fields", "GET / HTTP/1.1\r\n" + std::string(9000, 'x'),
         Refused("431 Request Header Fields Too Large")},
        {"the longest body", Post("Content-Length: 16384\r\n", large) + Get("/n"),
         Kept("POST /s body=" + large) + Kept("GET /n")},
        {"a longer body", Post("Content-Length: 16385\r\n", large + "x"), tooLarge},
        {"continue with a longer body", Post("Content-Length: 16385\r\nExpect: 100-continue\r\n", ""),
         tooLarge},
        {"the longest chunk", Post("Transfer-Encoding: chunked\r\n", "4000\r\n" + large + "\r\n0\r\n\r\n"),
         Kept("POST /s body=" + large)},
        {"longer chunks",
         Post("Transfer-Encoding: chunked\r\n", "4000\r\n" + large + "\r\n1\r\nx\r\n0\r\n\r\n"), tooLarge},
        {"a long extension", Post("Transfer-Encoding: chunked\r\n", "1;" + std::string(9000, 'x')), kBad},
    });
}
