#include "simulation/fakes/text_block.h"

#include <gmock/gmock.h>

#include <vector>

namespace simulation {
namespace {

/// Lays out the same texts as often as it is asked to.
std::vector<wchar_t*> PlaceTexts(TextBlock& texts) {
    return {texts.Place(L"ab"), texts.Place(std::nullopt), texts.Place(L""), texts.Place(L"c")};
}

TEST(TextBlock, MeasuresStructuresAndTextsWithTheirTerminators) {
    TextBlock texts(nullptr, 16);
    for (const wchar_t* place : PlaceTexts(texts)) {
        EXPECT_EQ(place, nullptr);
    }
    EXPECT_EQ(texts.Size(), 16 + 6 + 2 + 4u);
}

TEST(TextBlock, PutsTextsBehindTheStructuresWithoutGaps) {
    alignas(8) BYTE block[28];
    TextBlock texts(block, 16);
    const std::vector<wchar_t*> places = PlaceTexts(texts);
    EXPECT_EQ(reinterpret_cast<BYTE*>(places[0]), block + 16);
    EXPECT_EQ(places[1], nullptr);
    EXPECT_EQ(reinterpret_cast<BYTE*>(places[2]), block + 22);
    EXPECT_EQ(reinterpret_cast<BYTE*>(places[3]), block + 24);
    EXPECT_STREQ(places[0], L"ab");
    EXPECT_STREQ(places[2], L"");
    EXPECT_STREQ(places[3], L"c");
    EXPECT_EQ(texts.Size(), sizeof(block));
}

}  // namespace
}  // namespace simulation
