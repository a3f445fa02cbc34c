// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "messages/MaskedAddress.h"

#include "messages/Address.h"
#include "messages/BlockIndex.h"
#include "secrets/Keys.h"

#include <gtest/gtest.h>

using namespace beacond;

TEST(MaskedAddress, anyKind_showsTheServiceButNotThePerson)
{
    EXPECT_EQ(MaskedAddress({AddressKind::Mail, "aisha+tag@example.org"}), "a...@example.org");
    EXPECT_EQ(MaskedAddress({AddressKind::Mail, "a@example.org"}), "a...@example.org");
    EXPECT_EQ(MaskedAddress({AddressKind::Sms, "+4915112345678"}), "+49...78");
    EXPECT_EQ(MaskedAddress({AddressKind::Ntfy, "https://ntfy.example.org:8443/secret"}),
              "https://ntfy.example.org:8443/...");
}

TEST(BlockIndex, isThatOfAllSubaddressesAndOfOneKind)
{
    const Key key({1});
    const std::string index = BlockIndex(key, {AddressKind::Mail, "a@example.org"});

    EXPECT_EQ(BlockIndex(key, {AddressKind::Mail, "a+tag@example.org"}), index);
    const Address spelled{AddressKind::Mail, "v.i.ctim+tag@example.org"};
    EXPECT_EQ(BlockIndex(key, spelled), BlockIndex(key, {AddressKind::Mail, "victim@example.org"}));
    EXPECT_NE(BlockIndex(key, {AddressKind::Mail, "a-b@example.org"}), index) << "perhaps another person";
    EXPECT_NE(BlockIndex(key, {AddressKind::Mail, "b@example.org"}), index);
    EXPECT_NE(BlockIndex(key, {AddressKind::Ntfy, "a@example.org"}), index);
    EXPECT_NE(BlockIndex(Key({2}), {AddressKind::Mail, "a@example.org"}), index);
}
