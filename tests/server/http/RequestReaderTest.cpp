// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "http/RequestReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using beacond::RequestReader;

namespace {

// The path and body of each request in @p bytes, read in pieces of the given size, and the status of a
// refusal.
std::vector<std::string> RequestsIn(std::string_view bytes, std::size_t piece)
{
    RequestReader reader;
    std::vector<std::string> requests;
    RequestReader::State state = reader.Next();
    for (;;) {
        if (state == RequestReader::State::Refused) {
            requests.push_back(std::to_string(reader.RefusalStatus()));
            return requests;
        }
        if (state == RequestReader::State::Complete) {
            requests.push_back(reader.Message().path + reader.Message().body);
            state = reader.Next();
            continue;
        }
        const std::span<char> room = reader.Room();
        const std::size_t count = std::min({piece, bytes.size(), room.size()});
        if (count == 0) {
            return requests;
        }
        std::copy_n(bytes.begin(), count, room.begin());
        bytes.remove_prefix(count);
        state = reader.Append(count);
    }
}

} // namespace

TEST(RequestReader, bytesInPiecesOfAnySize_giveTheSameRequests)
{
    const std::string get = "\r\nGET /get HTTP/1.1\r\nHost: h\r\n\r\n";
    const std::string post = "POST /post HTTP/1.1\r\nHost: h\r\nContent-Length: 3\r\n\r\nabc";
    const std::string chunked = "POST /chunked HTTP/1.1\r\nHost: h\r\nTransfer-Encoding: chunked\r\n\r\n";
    const std::string bytes = get + post + chunked + "0\r\n\r\n" + get + chunked +
                              "1\r\na\r\n02;x=y\r\nbc\r\n0\r\nX: y\r\n\r\n" + chunked + "00\r\n\r\n" + get +
                              "GET /bad HTTP/1.1\n";
    const std::vector<std::string> requests = {"/get",        "/postabc", "/chunked", "/get",
                                               "/chunkedabc", "/chunked", "/get",     "400"};
    for (std::size_t piece = 1; piece <= bytes.size(); ++piece) {
        EXPECT_EQ(RequestsIn(bytes, piece), requests) << piece;
    }
}

TEST(RequestReader, manyRequestsInOneBuffer_areAllRead)
{
    std::string bytes;
    std::vector<std::string> requests;
    for (int number = 0; number < 1000; ++number) {
        requests.push_back("/" + std::to_string(number));
        bytes += "GET " + requests.back() + " HTTP/1.1\r\nHost: h\r\n\r\n";
    }
    EXPECT_EQ(RequestsIn(bytes, bytes.size()), requests);
}
