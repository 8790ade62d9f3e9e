#include "song/effect_records.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

namespace tonvex {
namespace {

struct Record_Case {
    Effect_Kind kind;
    const char* name;
    std::size_t bytes;
    const char* neutral;
};
// Singles: 50 is 42480000, 1000 447a0000, 0.001 3a83126f, 1.1 3f8ccccd, 500 43fa0000, 2400 45160000.
const Record_Case RECORDS[] = {
    {Effect_Kind::Reverb, "GUID_DSFX_WAVES_REVERB", 16, "000000000000000000007a446f12833a"},
    {Effect_Kind::Chorus, "GUID_DSFX_STANDARD_CHORUS", 28,
     "00004842000020410000c841cdcc8c3f010000000000804103000000"},
    {Effect_Kind::Flanger, "GUID_DSFX_STANDARD_FLANGER", 28,
     "000048420000c842000048c20000803e010000000000004002000000"},
    {Effect_Kind::Echo, "GUID_DSFX_STANDARD_ECHO", 20, "00004842000048420000fa430000fa4300000000"},
    {Effect_Kind::Distortion, "GUID_DSFX_STANDARD_DISTORTION", 20,
     "000090c10000704100001645000016450000fa45"},
};

TEST(Effect_Records, Have_Their_Bytes_And_Names) {
    for (const Record_Case& row : RECORDS) {
        SCOPED_TRACE(row.name);
        EXPECT_STREQ(Effect_Name(row.kind), row.name);
        EXPECT_EQ(Effect_Of_Name(row.name), row.kind);
        EXPECT_EQ(Effect_Record_Size(row.kind), row.bytes);
        EXPECT_EQ(Effect_Record_Text(row.kind, Neutral_Values(row.kind)), row.neutral);
        EXPECT_EQ(Effect_Of_Text(row.kind, row.neutral), Neutral_Values(row.kind));
    }
    EXPECT_EQ(Effect_Of_Name("GUID_DSFX_STANDARD_GARGLE"), std::nullopt);
}

TEST(Effect_Records, Foreign_Bytes_Become_Values_In_Range) {
    for (const Record_Case& row : RECORDS) {
        SCOPED_TRACE(row.name);
        // 255 throughout: singles that are no number, whole numbers of -1.
        const std::vector<std::uint8_t> full(row.bytes, 255);
        Byte_Cursor cursor(full);
        Effect_Values expected = Neutral_Values(row.kind);
        const auto parameters = Parameters_Of(row.kind);
        for (std::size_t i = 0; i < parameters.size(); ++i)
            if (parameters[i].whole)
                expected[i] = parameters[i].least;
        EXPECT_EQ(Read_Effect_Record(row.kind, cursor), expected);
        EXPECT_TRUE(cursor.Ok());
        for (std::size_t length = 0; length < row.bytes; ++length) {
            Byte_Cursor part(std::span<const std::uint8_t>(full).first(length));
            EXPECT_EQ(Read_Effect_Record(row.kind, part), Neutral_Values(row.kind)) << length;
            EXPECT_FALSE(part.Ok());
        }
        for (const std::string& text :
             {std::string(), std::string(row.neutral) + "00", std::string(row.neutral).replace(3, 1, "g"),
              std::string(row.neutral).substr(1)})
            EXPECT_EQ(Effect_Of_Text(row.kind, text), std::nullopt) << text;
    }
}

} // namespace
} // namespace tonvex
