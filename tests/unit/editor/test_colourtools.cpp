// The colour target switch, the colour dialog and the screen colour picker.
#include <algorithm>

#include "editortestsupport.h"

namespace skin::testing {
namespace {

constexpr OleColour kRed = 0x000000FF;
constexpr OleColour kTeal = 0x00808000;

TEST_F(EditorTest, ColourDialogStartsOnItsLastColourAndColoursOnlyASelectedLabel) {
    platform.colourAnswers = {kRed, kTeal, std::nullopt, kRed};
    editor.ChooseColour();  // nothing selected
    EXPECT_EQ(surface().swatch, kRed);
    drawArea(Send, 2, 100, 100, 300, 200);
    editor.ChooseColour();  // a box
    EXPECT_EQ(surface().swatch, kTeal);
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Back), kLightGrey);
    drawArea(Send, 1, 100, 400, 300, 200);
    editor.ChooseColour();  // cancelled: nothing changes
    EXPECT_EQ(surface().swatch, kTeal);
    EXPECT_EQ(doc().Colour(TextField::SendMessage, ColourRole::Back), kLightGrey);
    editor.ChooseColour();
    EXPECT_EQ(doc().Colour(TextField::SendMessage, ColourRole::Back), kRed);
    EXPECT_EQ(platform.colourDialogStarts, (std::vector<OleColour>{0, kRed, kTeal, kTeal}));
}

TEST_F(EditorTest, PickerAndColourTargetSetTheTargetColourOfTheSelectedLabel) {
    drawArea(Send, 0, 100, 100, 300, 200);
    platform.screenPixels = {kTeal, kRed};
    editor.PickerPressed();
    EXPECT_EQ(surface().pickerFace, "Eye_ON");
    EXPECT_TRUE(platform.pickerPointer);
    EXPECT_TRUE(platform.colourTimer);
    editor.SampleScreenColour();
    EXPECT_EQ(surface().swatch, kTeal);
    editor.SampleScreenColour();
    editor.PickerReleased();
    EXPECT_EQ(surface().pickerFace, "Eye_OFF");
    EXPECT_FALSE(platform.pickerPointer);
    EXPECT_FALSE(platform.colourTimer);
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Back), kRed);
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Text), kSystemWindowText);
    // A release before any tick applies the swatch as it was, to the colour the target names.
    editor.SetColourTarget(ColourRole::Text);
    EXPECT_EQ(surface().mapTag, "Map_OFF");
    EXPECT_EQ(surface().textTag, "Text_ON");
    editor.PickerPressed();
    editor.PickerReleased();
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Text), kRed);
    editor.SetColourTarget(ColourRole::Back);
    EXPECT_EQ(surface().mapTag, "Map_ON");
    EXPECT_EQ(surface().textTag, "Text_OFF");
    editor.ApplyColour(kTeal);
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Back), kTeal);
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Text), kRed);
}

// Where the session lets nothing be read, the picker never makes a colour up: the swatch
// keeps the last colour read and is marked unread, and a release there stores nothing unless
// the desktop's own pick gives a colour.
TEST_F(EditorTest, PickerStoresOnlyColoursItRead) {
    drawArea(Send, 0, 100, 100, 300, 200);
    platform.screenPixels = {kTeal, std::nullopt};
    editor.PickerPressed();
    editor.SampleScreenColour();
    EXPECT_FALSE(surface().swatchUnread);
    editor.SampleScreenColour();  // the pointer has left what can be read
    EXPECT_EQ(surface().swatch, kTeal);
    EXPECT_TRUE(surface().swatchUnread);
    editor.PickerReleased();  // no desktop pick
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Back), kLightGrey);
    EXPECT_EQ(surface().swatch, kTeal);
    EXPECT_TRUE(surface().swatchUnread);
    EXPECT_EQ(surface().pickerFace, "Eye_OFF");
    EXPECT_FALSE(platform.colourTimer);

    // Released unread again, the desktop's pick answers: its colour is swatch and label colour.
    platform.desktopPicks = {kRed, std::nullopt};
    editor.PickerPressed();
    EXPECT_FALSE(surface().swatchUnread);
    editor.SampleScreenColour();
    editor.PickerReleased();
    EXPECT_EQ(surface().swatch, kRed);
    EXPECT_FALSE(surface().swatchUnread);
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Back), kRed);
    // A cancelled desktop pick changes nothing; a readable pixel later needs no desktop pick.
    editor.PickerPressed();
    editor.SampleScreenColour();
    editor.PickerReleased();
    EXPECT_EQ(surface().swatch, kRed);
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Back), kRed);
    platform.screenPixels = {kTeal};
    editor.PickerPressed();
    editor.SampleScreenColour();
    editor.PickerReleased();
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Back), kTeal);
    EXPECT_EQ(std::count(platform.log.begin(), platform.log.end(), "desktop pick"), 3);

    // Where the desktop picks, a click on the picker (no tick read anything) opens its pick.
    platform.pickerHandsOver = true;
    platform.desktopPicks = {kRed};
    editor.PickerPressed();
    editor.PickerReleased();
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Back), kRed);
    EXPECT_EQ(std::count(platform.log.begin(), platform.log.end(), "desktop pick"), 4);
}

TEST_F(EditorTest, PickerSwapsNamedTextFieldsForTheirBoxesInOneChange) {
    drawArea(Send, 0, 100, 100, 300, 200);
    drawArea(Send, 1, 100, 400, 300, 200);
    drawArea(Receive, 1, 100, 400, 300, 200);
    drawArea(Receive, 2, 100, 700, 300, 200);  // Receive Date has no box: it is not swapped
    const std::vector<TextField> swapped{TextField::ReceiveMessage, TextField::ReceiveSender, TextField::SendMessage,
                                         TextField::SendUsers};
    for (bool hiding : {true, false}) {
        SCOPED_TRACE(hiding ? "press" : "release");
        view.shown.clear();
        hiding ? editor.PickerPressed() : editor.PickerReleased();
        ASSERT_EQ(view.shown.size(), 1u);  // the view hears the whole swap at once
        const EditorSurface& s = view.shown[0];
        EXPECT_TRUE(s.Label(TextField::ReceiveDate).visible);
        for (TextField f : swapped) {
            EXPECT_EQ(s.Label(f).visible, !hiding);
            EXPECT_EQ(s.Boxes(SideOf(f))[s.TextFieldBox(f)].visible, hiding);
        }
    }
}

}  // namespace
}  // namespace skin::testing
