// SPDX-FileCopyrightText: 2026 Dusk Beacon contributors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/PageText.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

void ExpectText(const QByteArray& page, const char16_t* text)
{
    EXPECT_TRUE(PageText(page).endsWith(QString::fromUtf16(text)))
        << page.constData() << ": " << PageText(page).toStdString();
}

TEST(PageText, namedEncoding_isUsed)
{
    const std::pair<const char*, const char16_t*> rows[] = {
        {"\xD3\x80", u"\u00D3\u20AC"},
        {"<meta charset=unicode>\xC3\x9E", u">\u00DE"},
        {"<meta charset=windows-1256>\xD3\xE1\xC7\xE3", u">\u0633\u0644\u0627\u0645"},
        {"<meta charset='ISO-8859-6'>\xD3\xE4\xC7\xE5", u">\u0633\u0644\u0627\u0645"},
        {"<meta http-equiv=Content-Type content=\"text/html; charset = windows-1254\">\xDE\x80",
         u">\u015E\u20AC"},
        {"<META CHARSET=\"iso-8859-9\">\xDE\x80", u">\u015E\u20AC"},
        {"<meta charset=latin5>\xDE\x80", u">\u015E\u20AC"},
        {"<meta charset=gb2312>\x81\x40", u">\u4E02"},
        {"<meta charset=euc-kr>\x81\x41", u">\uAC02"},
        {"<meta charset=iso-8859-11>\xA1\x80", u">\u0E01\u20AC"},
        {"<meta charset=utf-7>+AGE-\xD3", u"+AGE-\u00D3"},
        {"<meta name=a content=b><meta charset=utf-8>\xC3\xA4", u">\u00E4"},
        {"<meta charset=utf-8><meta charset=latin1>\xC3\xA4", u">\u00E4"},
        {"<meta charset=utf-8>a\xFF b", u">a\uFFFD b"},
    };
    for (const auto& [page, text] : rows) {
        ExpectText(page, text);
    }
}

TEST(PageText, aliases_areTheEncodingOfBrowsers)
{
    for (const char* const latin :
         {"iso-8859-1", "Latin1", "l1", "iso8859-1", "ISO_8859-1:1987", "ascii", "latin-1", "8859_1"}) {
        ExpectText(QByteArray("<meta charset=") + latin + ">\x80", u">\u20AC");
    }
    for (const char* const twoBytes :
         {"utf-16", "UTF-16LE", "utf-16be", "utf16", "UTF16_BigEndian", "unicodeFFFE"}) {
        ExpectText(QByteArray("<meta charset=") + twoBytes + ">\xC3\xA4", u">\u00E4");
    }
}

TEST(PageText, encodingThatCannotBeUsed_isIgnored)
{
    for (const char* const name : {"klingon", "''", "utf-32", "utf32", "csUCS4", "ibm-37"}) {
        ExpectText(QByteArray("<meta charset=") + name + ">\xD3", u">\u00D3");
    }
}

TEST(PageText, encodingOutsideAMetaTag_isIgnored)
{
    for (const char* const page :
         {"<meta name=a>charset=utf-8 \xC3\xA4", "<meta name=a><b charset=utf-8>\xC3\xA4",
          "<!--<meta charset=utf-8>-->\xC3\xA4", "<meta name='<meta charset=utf-8>'>\xC3\xA4",
          "charset=utf-8 \xC3\xA4"}) {
        ExpectText(page, u"\u00C3\u00A4");
    }
}

TEST(PageText, encodingNamedAfter1024Bytes_orCutThere_isIgnored)
{
    ExpectText("<!--" + QByteArray(1016, 'x') + "--><meta charset=utf-8>\xC3\xA4", u">\u00C3\u00A4");
    // The end of the name "iso-8859-6-e" is beyond the first 1024 bytes.
    const QByteArray tag = "<meta charset=iso-8859-6";
    ExpectText("<!--" + QByteArray(1024 - 7 - tag.size(), 'x') + "-->" + tag + "-e>\xD3", u">\u00D3");
}

} // namespace
