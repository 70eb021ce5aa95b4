// Documents that are no profile, or that would cost the host time and memory.
#include "profile_fixture.h"
#include "tests/support/odd_files.h"

namespace {

struct ProfileHostile : ProfileTest {
    /// The code of a document, PROFILE_OK if it opens.
    i32 CodeOf(const std::string& strBytes) const {
        File("document.xml", strBytes);
        std::u16string wstrPath;
        for (const char c : m_folder.Path("document.xml")) wstrPath += static_cast<char16_t>(c);
        tinyxml2::XMLDocument document;
        i32 iCode = 99;
        const bool bOpened = g_fnOpenProfileDocument(wstrPath.c_str(), document, &iCode);
        EXPECT_EQ(bOpened, iCode == PROFILE_OK);
        EXPECT_EQ(bOpened, document.FirstChildElement("OSD") != nullptr);
        return iCode;
    }
    static std::string Repeat(const std::string& str, std::size_t uTimes) {
        std::string strAll;
        strAll.reserve(str.size() * uTimes);
        while (uTimes--) strAll += str;
        return strAll;
    }
    static std::string Wide(const std::string& str, bool bBigEndian) {
        std::string strWide;
        for (const char c : str)
            bBigEndian ? (strWide += '\0', strWide += c) : (strWide += c, strWide += '\0');
        return strWide;
    }
    static std::string Words(std::string_view text) {
        const char* const sz = g_fnDocumentProblem(text);
        return sz ? sz : "";
    }
};

} // namespace

TEST_F(ProfileHostile, WhatIsNoPlainFileIsNotOpened) {
    const std::string strPath = m_folder.Path("odd.xml");
    ForEachOddFile(strPath, [&](const char* szKind) {
        tinyxml2::XMLDocument document;
        i32 iCode = 99;
        const std::u16string wzPath(strPath.begin(), strPath.end());
        EXPECT_FALSE(g_fnOpenProfileDocument(wzPath.c_str(), document, &iCode)) << szKind;
        EXPECT_EQ(iCode, PROFILE_NOT_OPENED) << szKind;
    });
}

TEST_F(ProfileHostile, AMissingFileIsNotOpened) {
    tinyxml2::XMLDocument document;
    i32 iCode = 99;
    EXPECT_FALSE(g_fnOpenProfileDocument(u"/nowhere/OSD.xml", document, &iCode));
    EXPECT_EQ(iCode, PROFILE_NOT_OPENED);
    EXPECT_FALSE(g_fnOpenProfileDocument(u"", document, &iCode));
    EXPECT_FALSE(g_fnOpenProfileDocument(u"/nowhere/OSD.xml", document, nullptr));
}

TEST_F(ProfileHostile, AFailureLeavesNothingOfAnEarlierDocument) {
    tinyxml2::XMLDocument document;
    ASSERT_TRUE(g_fnParseProfileDocument("<OSD/>", document, nullptr));
    EXPECT_FALSE(g_fnOpenProfileDocument(u"/nowhere/OSD.xml", document, nullptr));
    EXPECT_EQ(document.FirstChild(), nullptr);
    ASSERT_TRUE(g_fnParseProfileDocument("<OSD/>", document, nullptr));
    EXPECT_FALSE(g_fnParseProfileDocument({"<OSD/>\0", 7}, document, nullptr));
    EXPECT_EQ(document.FirstChild(), nullptr);
}

TEST_F(ProfileHostile, EmptyAndBlankFilesAreParseErrors) {
    EXPECT_EQ(CodeOf(""), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf(" \r\n\t"), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf("\xEF\xBB\xBF"), PROFILE_NOT_PARSED);
}

TEST_F(ProfileHostile, EveryTruncationOfAProfileFailsCleanly) {
    const std::string strWhole =
        "<?xml version=\"1.0\"?><!-- a --><OSD LayoutStyle=\"2\"><CustomLayout><Settings>"
        "<Info IsShow=\"1\">&#65;<![CDATA[b]]></Info></Settings></CustomLayout></OSD>";
    EXPECT_EQ(CodeOf(strWhole), PROFILE_OK);
    for (std::size_t u = 0; u < strWhole.size(); ++u) {
        const i32 iCode = CodeOf(strWhole.substr(0, u));
        EXPECT_TRUE(iCode == PROFILE_NOT_PARSED || iCode == PROFILE_NO_ROOT) << u;
    }
}

TEST_F(ProfileHostile, AMarkOfUtf8IsSkippedAndDeclarationsAndCommentsMayComeFirst) {
    EXPECT_EQ(CodeOf("\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><!--x--><OSD/>"), PROFILE_OK);
}

TEST_F(ProfileHostile, Utf16IsAParseError) {
    const std::string str = "<?xml version='1.0' encoding='utf-16'?><OSD/>";
    EXPECT_EQ(CodeOf("\xFF\xFE" + Wide(str, false)), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf("\xFE\xFF" + Wide(str, true)), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf(Wide(str, false)), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf(Wide(str, true)), PROFILE_NOT_PARSED);
    EXPECT_EQ(Words(Wide(str, true)), "is not UTF-8 text");
}

TEST_F(ProfileHostile, BytesOf0AreAParseErrorWhereverTheyStand) {
    EXPECT_EQ(CodeOf({"<OSD/>\0", 7}), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf({"\0<OSD/>", 7}), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf({"<OSD a='\0'/>", 12}), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf(std::string(5000, '\0')), PROFILE_NOT_PARSED);
}

TEST_F(ProfileHostile, OtherWrongBytesAreTextLikeAnyOther) {
    EXPECT_EQ(CodeOf("<OSD a='\xE9\x80\xFF'/>"), PROFILE_OK);
}

TEST_F(ProfileHostile, ADocumentAbove32MegabytesIsNotOpened) {
    const std::string strEnd = "-->";
    std::string str = "<OSD/><!--" + std::string(g_uDocumentBytesMax - 13, 'x') + strEnd;
    ASSERT_EQ(str.size(), g_uDocumentBytesMax);
    EXPECT_EQ(CodeOf(str), PROFILE_OK);
    EXPECT_EQ(CodeOf(str + "\n"), PROFILE_NOT_OPENED);
    EXPECT_EQ(Words(str + "\n"), "is too large");
}

TEST_F(ProfileHostile, TenThousandLevelsAreAParseError) {
    EXPECT_EQ(CodeOf("<OSD>" + Repeat("<a>", 10000) + Repeat("</a>", 10000) + "</OSD>"), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf(Repeat("<OSD>", 10000)), PROFILE_NOT_PARSED);
    EXPECT_EQ(CodeOf("<OSD>" + Repeat("<a>", 50) + Repeat("</a>", 50) + "</OSD>"), PROFILE_OK);
}

TEST_F(ProfileHostile, AMillionItemsOpen) {
    EXPECT_EQ(CodeOf("<OSD>" + Repeat("<TextBox Name='a'/>", 1000000) + "</OSD>"), PROFILE_OK);
}

TEST_F(ProfileHostile, ElementsWithoutEndAreRefused) {
    const std::string str = "<OSD>" + Repeat("<a/>", g_uDocumentNodesMax) + "</OSD>";
    EXPECT_EQ(Words(str), "has too many elements");
    EXPECT_EQ(CodeOf(str), PROFILE_NOT_PARSED);
    EXPECT_EQ(Words("<OSD>" + Repeat("<a/>", g_uDocumentNodesMax - 1) + "</OSD>"), "");
}

TEST_F(ProfileHostile, UnfinishedNumberedCharactersAreRefusedBeforeTheyCostTheSquareOfTheText) {
    const std::string str = "<OSD a='" + Repeat("&#", 500000) + "'/>";
    EXPECT_EQ(Words(str), "has too many unfinished numbered characters");
    EXPECT_EQ(CodeOf(str), PROFILE_NOT_PARSED);
    // Finished ones, and a few others, are nothing to be afraid of.
    EXPECT_EQ(CodeOf("<OSD a='" + Repeat("&#65;", 500000) + "'/>"), PROFILE_OK);
    EXPECT_EQ(CodeOf("<OSD a='R&#D &#'/>"), PROFILE_OK);
}

TEST_F(ProfileHostile, AnElementHasNoMoreAttributesThanTheParserCanCompare) {
    const auto element = [](std::size_t uAttributes) {
        std::string str = "<OSD";
        for (std::size_t u = 0; u < uAttributes; ++u) str += " a" + std::to_string(u) + "='>'";
        return str + "/>";
    };
    EXPECT_EQ(CodeOf(element(g_uElementAttributesMax)), PROFILE_OK);
    EXPECT_EQ(CodeOf(element(g_uElementAttributesMax + 1)), PROFILE_NOT_PARSED);
    EXPECT_EQ(Words(element(1000000)), "has an element with too many attributes");
}

TEST_F(ProfileHostile, AttributesOfAllElementsAreCountedTogether) {
    const std::string str =
        "<OSD>" + Repeat("<a b='' c='' d=''/>", g_uDocumentAttributesMax / 3 + 1) + "</OSD>";
    EXPECT_EQ(Words(str), "has too many attributes");
}

TEST_F(ProfileHostile, MarksInCommentsAndInValuesAreNotCounted) {
    const std::string strQuotes = Repeat("' a='", g_uElementAttributesMax * 2);
    EXPECT_EQ(CodeOf("<OSD><!--<a " + strQuotes + "--><b/></OSD>"), PROFILE_OK);
    EXPECT_EQ(CodeOf("<OSD><![CDATA[<a " + strQuotes + "]]><b/></OSD>"), PROFILE_OK);
    EXPECT_EQ(CodeOf("<OSD>" + strQuotes + "</OSD>"), PROFILE_OK);
    EXPECT_EQ(CodeOf("<?x " + strQuotes + "?><OSD/>"), PROFILE_OK);
    EXPECT_EQ(CodeOf("<OSD a=\"" + strQuotes + "\"/>"), PROFILE_OK);
    // What follows them is looked at again.
    const std::string strMany = "<b " + Repeat("a='' ", g_uElementAttributesMax + 1) + "/>";
    for (const char* szBefore : {"<!-- ' -->", "<![CDATA[ \" ]]>", "<a b='>'/>", "'", "<!x '>"})
        EXPECT_EQ(Words("<OSD>" + std::string(szBefore) + strMany),
                  "has an element with too many attributes");
}

TEST_F(ProfileHostile, TheReasonOfARefusalIsLogged) {
    EXPECT_EQ(CodeOf({"<OSD/>\0", 7}), PROFILE_NOT_PARSED);
    ASSERT_EQ(s_aLines.size(), 1u);
    EXPECT_EQ(s_aLines[0], "profile document refused: is not UTF-8 text");
}
