// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Xml.h"

#include <gtest/gtest.h>

#include <vector>

using namespace std::string_literals;
using beacond::XmlReply;

TEST(XmlReply, nothingAdded_isTheEmptyRoot)
{
    EXPECT_EQ(XmlReply().Finish(), "<root/>");
}

TEST(XmlReply, attributesBeforeChildren_areTheRootsOwn)
{
    XmlReply reply;
    reply.Attribute("num_matches", "2").Attribute("max_matches", "200");
    reply.Child().Attribute("city", "Makkah").Attribute("atlas_id", "SA-G104515");
    reply.Child();
    reply.Child("G42").Attribute("city", "Ma'an");
    const std::size_t size = reply.Size();
    const std::string text = reply.Finish();
    EXPECT_EQ(text, R"(<root num_matches="2" max_matches="200"><c1 city="Makkah" atlas_id="SA-G104515"/>)"
                    R"(<c2/><G42 city="Ma&#39;an"/></root>)");
    EXPECT_EQ(size, text.size());
}

TEST(XmlReply, anyBytes_becomeValidXmlText)
{
    struct Row
    {
        const char* name;
        std::string value;
        std::string written;
    };
    const std::vector<Row> rows = {
        {"markup", "<a href=\"x\">'&'</a>", "&lt;a href=&quot;x&quot;&gt;&#39;&amp;&#39;&lt;/a&gt;"},
        {"an escape is not decoded", "&amp;", "&amp;amp;"},
        {"white space", " \t\r\n ", " &#9;&#13;&#10; "},
        {"control characters", "a\0b\x01\x1F\x7F"s, "ab\x7F"},
        {"Arabic", "مكة", "مكة"},
        {"beyond the first plane", "\U0001F54C", "\U0001F54C"},
        {"no characters", "a\uFFFEb\uFFFFc\uFFFD", "abc\uFFFD"},
        {"windows-1252", "K\xF6ln", "K\uFFFDln"},
        {"cut off", "a\xE2\x82", "a\uFFFD\uFFFD"},
        {"surrogate", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
    };
    for (const Row& row : rows) {
        XmlReply reply;
        reply.Attribute("a", row.value);
        EXPECT_EQ(reply.Finish(), "<root a=\"" + row.written + "\"/>") << row.name;
    }
}
