// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fakes/ErrorOf.h"
#include "support/CodePage.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#define TEXT_OF(name) #name
#define NAME_OF(name) TEXT_OF(name)

namespace {

bool knowsNoConverter = false;

} // namespace

// Replaces ICU's own function, whose name includes the version.
UConverter* ucnv_open(const char* name, UErrorCode* status)
{
    if (knowsNoConverter) {
        *status = U_FILE_ACCESS_ERROR;
        return nullptr;
    }
    using Open = UConverter* (*)(const char*, UErrorCode*);
    return reinterpret_cast<Open>(::dlsym(RTLD_NEXT, NAME_OF(ucnv_open)))(name, status);
}

namespace {

TEST(CodePage, converterThatIsMissing_isARuntimeErrorOfTheCaller)
{
    knowsNoConverter = true;
    EXPECT_EQ(ErrorOf([] { return ToCodePage(QStringLiteral("a")); }), ErrorNumber::kInvalidCall);
    EXPECT_EQ(ErrorOf([] { return FromCodePage("a"); }), ErrorNumber::kInvalidCall);
    EXPECT_EQ(FromEncoding("a", "UTF-8"), std::nullopt);
    knowsNoConverter = false;
    EXPECT_EQ(ToCodePage(QStringLiteral("a")), "a");
}

} // namespace
