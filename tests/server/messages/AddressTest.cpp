// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/Address.h"

#include "secrets/Keys.h"

#include <gtest/gtest.h>

using namespace beacond;

TEST(Address, parse_recognisesTheKindAndNormalises)
{
    const std::string longest(64, 't');
    const struct
    {
        std::string typed;
        AddressKind kind;
        std::string text;
    } rows[] = {
        {" Aisha@Example.org ", AddressKind::Mail, "aisha@example.org"},
        {"+44 20 7946-0958", AddressKind::Sms, "+442079460958"},
        {"0049.30.123456", AddressKind::Sms, "+4930123456"},
        {"+123456789012345", AddressKind::Sms, "+123456789012345"},
        {" HTTPS://Ntfy.Example.org/My_Topic-1\n", AddressKind::Ntfy, "https://ntfy.example.org/My_Topic-1"},
        {"https://ntfy.example.org:8443/t", AddressKind::Ntfy, "https://ntfy.example.org:8443/t"},
        {"https://ntfy.example.org/" + longest, AddressKind::Ntfy, "https://ntfy.example.org/" + longest},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ParseAddress(row.typed), (Address{row.kind, row.text})) << row.typed;
    }
}

TEST(Address, parse_invalidAddress_isNothing)
{
    for (const std::string typed : {"",
                                    "aisha",
                                    "aisha@",
                                    "020 7946 0958",
                                    "+0123456789",
                                    "+1234567",
                                    "+1234567890123456",
                                    "+44 (0) 20 7946 0958",
                                    "+44207946O958",
                                    "+44207946\r\n0958",
                                    "+",
                                    "00",
                                    "http://ntfy.example.org/t",
                                    "https://localhost/t",
                                    "https://127.0.0.1/t",
                                    "https://ntfy.example.org",
                                    "https://ntfy.example.org/",
                                    "https://ntfy.example.org/a/b",
                                    "https://ntfy.example.org/a?b",
                                    "https://ntfy.example.org/a\r\nb",
                                    "https://user@ntfy.example.org/t",
                                    "https://ntfy.example.org:0/t",
                                    "https://ntfy.example.org:/t",
                                    "https://ntfy.example.org:123456/t",
                                    "ftp://ntfy.example.org/t"}) {
        EXPECT_EQ(ParseAddress(typed), std::nullopt) << typed;
    }
    EXPECT_EQ(ParseAddress("https://ntfy.example.org/" + std::string(65, 't')), std::nullopt);
}

// A topic may be spelled as another kind's address.
TEST(Address, index_differsByKind)
{
    const Key key({1});
    const std::string text = "same";
    EXPECT_EQ(AddressIndex(key, {AddressKind::Mail, text}), key.Hash("mail address", text));
    EXPECT_EQ(AddressIndex(key, {AddressKind::Sms, text}), key.Hash("sms address", text));
    EXPECT_EQ(AddressIndex(key, {AddressKind::Ntfy, text}), key.Hash("ntfy address", text));
}
