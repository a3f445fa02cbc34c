// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "server/protocol/ScriptsFixture.h"

#include <future>

using namespace beacond;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::string kCode = "1234567890123456";
const std::string kConfirm = "ma/confirmSignup.pl";
const std::string kCall = "prayerCall.pl";
const std::string kWanted = "prod_string=installation-of-pc&aid=SA-G104515&pno=1&alert_type=Normal&ma=1&dist_"
                            "string=&time=5:07&aid=SA-G104515";

std::string Result(const char* result, const char* message)
{
    return std::string("<root result=\"") + result + "\" message=\"" + message + "\"/>";
}

const std::string kConfirmed =
    Result("1", "Your mobile device is registered. Tick Enable Mobile Alerts, then choose its messages on "
                "the page of each prayer. The message with the code says how to end them.");
const std::string kUnknown =
    Result("0", "This personal code is not known. Please check its 16 digits, or sign up again for a new "
                "one. A code registers one installation only.");

} // namespace

class MessageScriptsTest : public ScriptsTest
{
protected:
    std::string Confirm(const std::string& code, const std::string& installation = "installation-of-pc")
    {
        return Body(kConfirm, "prod_string=" + installation + "&vCode=" + code + "&dist_string=");
    }
    void Register()
    {
        SignUp(kCode);
        ASSERT_EQ(Confirm(kCode), kConfirmed);
    }
    /// Returns the sorted replies to the code from these installations at once.
    std::vector<std::string> ConfirmAtOnce(const std::vector<std::string>& installations)
    {
        std::vector<std::future<std::string>> pending;
        for (const std::string& installation : installations) {
            pending.push_back(std::async(std::launch::async, [&] { return Confirm(kCode, installation); }));
        }
        std::vector<std::string> replies;
        for (std::future<std::string>& reply : pending) {
            replies.push_back(reply.get());
        }
        std::sort(replies.begin(), replies.end());
        return replies;
    }
};

TEST_F(MessageScriptsTest, confirmSignup_codeInAnyGrouping_isConfirmed)
{
    SignUp(kCode);
    EXPECT_EQ(Confirm("1234-5678 9012-3456"), kConfirmed);
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(Confirm(kCode), kConfirmed) << "a lost reply must not undo it";
    }
    EXPECT_EQ(Confirm(kCode, "another-installation"), kUnknown);
}

TEST_F(MessageScriptsTest, confirmSignup_refusals_haveAMessageInXml)
{
    SignUp(kCode);
    EXPECT_EQ(Confirm("6543210987654321"), kUnknown);
    EXPECT_EQ(Confirm(""), kUnknown);
    EXPECT_EQ(Confirm("abc"), kUnknown);
    EXPECT_EQ(Confirm(kCode, ""),
              Result("0", "This installation is not known yet. Please start Dusk Beacon again while the "
                          "computer is connected to the Internet, then register."));
    now += std::chrono::minutes(31);
    EXPECT_EQ(Confirm(kCode), Result("0", "This personal code has expired: it is valid for 30 minutes. "
                                          "Please sign up again for a new one."));
    EXPECT_EQ(scripts.Figures().codesWrong, 3U);
    EXPECT_EQ(scripts.Figures().codesExpired, 1U);
}

// Others could guess it, and have texts sent.
TEST_F(MessageScriptsTest, confirmSignup_shortIdentifier_isNotBound)
{
    SignUp(kCode);
    EXPECT_THAT(Confirm(kCode, "fifteen-letters"), HasSubstr("start Dusk Beacon again"));
    EXPECT_EQ(Confirm(kCode, "sixteen--letters"), kConfirmed);
}

TEST_F(MessageScriptsTest, confirmSignup_elevenWrongCodes_lockTheNetworkForAnHour)
{
    SignUp(kCode);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(Confirm("0000000000000000"), kUnknown);
    }
    EXPECT_EQ(Confirm(kCode), Result("0", "Too many wrong codes. Please try again in an hour."));
    client = "192.0.2.2";
    EXPECT_EQ(Confirm(kCode), kConfirmed);
    EXPECT_EQ(scripts.Figures().codesConfirmed, 1U);
    EXPECT_EQ(scripts.Figures().codesWrong, 10U);
    EXPECT_EQ(scripts.Figures().codesLimited, 1U);

    client = "192.0.2.1";
    now -= std::chrono::days(1);
    elapsed += std::chrono::hours(1);
    EXPECT_EQ(Confirm("0000000000000000"), kUnknown) << "a clock that is set back does not lengthen the hour";
}

TEST_F(MessageScriptsTest, confirmSignup_wrongCodes_countForTheHouseholdOfAnIpv6Address)
{
    SignUp(kCode);
    for (int i = 0; i < 10; ++i) {
        client = "2001:db8:1:2::" + std::to_string(i);
        EXPECT_EQ(Confirm("0000000000000000"), kUnknown);
    }
    client = "2001:db8:1:2:3:4:5:6";
    EXPECT_THAT(Confirm(kCode), HasSubstr("Too many wrong codes."));
    client = "2001:db8:1:3::1";
    EXPECT_EQ(Confirm(kCode), kConfirmed);
}

TEST_F(MessageScriptsTest, confirmSignup_wrongCodesOfAllBeyondTheAlarm_areReportedOnceAnHour)
{
    const auto guess = [this](int count) {
        for (int i = 0; i < count; ++i) {
            client = "192.0.2." + std::to_string(i);
            EXPECT_EQ(Confirm("0000000000000000"), kUnknown);
        }
    };
    guess(kWrongCodesAlarm);
    EXPECT_THAT(reports, IsEmpty());
    guess(kWrongCodesAlarm);
    EXPECT_THAT(reports, testing::ElementsAre("more than 5 wrong personal codes within an hour"));
    elapsed += std::chrono::hours(1);
    guess(kWrongCodesAlarm);
    EXPECT_EQ(reports.size(), 1U) << "they are counted anew";
    guess(1);
    EXPECT_EQ(reports.size(), 2U);
}

TEST_F(MessageScriptsTest, confirmSignup_oneCodeByManyInstallationsAtOnce_isConfirmedForOne)
{
    SignUp(kCode);
    EXPECT_THAT(
        ConfirmAtOnce({"installation-001", "installation-002", "installation-003", "installation-004",
                       "installation-005", "installation-006", "installation-007", "installation-008"}),
        testing::ElementsAre(kUnknown, kUnknown, kUnknown, kUnknown, kUnknown, kUnknown, kUnknown,
                             kConfirmed));
}

TEST_F(MessageScriptsTest, confirmSignup_oneInstallationManyTimesAtOnce_isConfirmedEachTime)
{
    SignUp(kCode);
    EXPECT_THAT(ConfirmAtOnce(std::vector<std::string>(8, "installation-of-pc")), testing::Each(kConfirmed));
}

TEST_F(MessageScriptsTest, prayerCall_ofAConfirmedInstallation_queuesOneText)
{
    Register();
    EXPECT_EQ(Body(kCall, kWanted), "<root/>");
    EXPECT_EQ(Body(kCall, kWanted), "<root/>");

    EXPECT_THAT(Outbox(), testing::ElementsAre(OutboxRow{1, 1, 1, "5:07", "SA-G104515"}));
    EXPECT_EQ(scripts.Figures().textsQueued, 1U);
}

TEST_F(MessageScriptsTest, prayerCall_withoutARequestOrMalformed_queuesNothing)
{
    Register();
    for (const char* const query :
         {"prod_string=installation-of-pc&pno=1&ma=0&time=5:07",
          "prod_string=installation-of-pc&pno=1&time=5:07",
          "prod_string=installation-of-pc&pno=0&ma=1&time=5:07",
          "prod_string=installation-of-pc&pno=7&ma=1&time=5:07",
          "prod_string=installation-of-pc&pno=12&ma=1&time=5:07",
          "prod_string=installation-of-pc&pno=&ma=1&time=5:07",
          "prod_string=installation-of-pc&pno=1&ma=1&time=5:7",
          "prod_string=installation-of-pc&pno=1&ma=1&time=",
          "prod_string=installation-of-pc&pno=1&ma=1&time=123:07",
          "prod_string=installation-of-pc&pno=1&ma=1&time=24:00",
          "prod_string=installation-of-pc&pno=1&ma=1&time=5:60",
          "prod_string=installation-of-pc&pno=1&ma=1&time=5:07%0ABuy", "prod_string=&pno=1&ma=1&time=5:07",
          "prod_string=stranger&pno=1&ma=1&time=5:07"}) {
        EXPECT_EQ(Body(kCall, query), "<root/>") << query;
        EXPECT_THAT(Outbox(), IsEmpty()) << query;
    }
}

TEST_F(MessageScriptsTest, prayerCall_unknownPlace_isNotStored)
{
    Register();
    Ask(kCall, "prod_string=installation-of-pc&aid=<b>&pno=6&ma=1&time=20:15");
    EXPECT_THAT(Outbox(), testing::ElementsAre(testing::Field(&OutboxRow::place, "")));
}

TEST_F(MessageScriptsTest, failingStore_missesTheTextAndIsReported)
{
    Register();
    Database(folder.File("store.db")).Execute("DROP TABLE installation");

    const Response response = Ask(kCall, kWanted);
    EXPECT_EQ(response.status, 503U);
    EXPECT_THAT(response.body, testing::Not(HasSubstr("<")));
    EXPECT_EQ(scripts.Figures().textsMissed, 1U);
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_THAT(reports[0], HasSubstr("store.db: "));
    SignUp("1111222233334444");
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(Confirm("1111222233334444", "installation-of-pc2"),
                  Result("0", "The service can&#39;t store anything just now. Please try again later."));
    }
}

TEST_F(MessageScriptsTest, prayerCall_withNoTextDue_needsNoLockOfTheStore)
{
    Register();
    ASSERT_EQ(Body(kCall, kWanted), "<root/>");
    Database other(folder.File("store.db"));
    other.Execute("BEGIN IMMEDIATE");
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(Ask(kCall, "prod_string=invented" + std::to_string(i) + "&pno=1&ma=1&time=5:07").status,
                  200U);
    }
    EXPECT_EQ(Ask(kCall, kWanted).status, 200U) << "its text was queued a moment ago";
    EXPECT_EQ(Ask(kCall, "prod_string=installation-of-pc&pno=2&ma=1&time=5:07").status, 503U);
}
