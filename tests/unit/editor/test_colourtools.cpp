// The colour target switch, the colour dialog and the screen colour picker.
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

TEST_F(EditorTest, PickerSwapsNamedTextFieldsForTheirBoxesOneByOneInTheFixedOrder) {
    drawArea(Send, 0, 100, 100, 300, 200);
    drawArea(Send, 1, 100, 400, 300, 200);
    drawArea(Receive, 1, 100, 400, 300, 200);
    drawArea(Receive, 2, 100, 700, 300, 200);  // Receive Date has no box: it is not swapped
    const std::vector<TextField> order{TextField::ReceiveMessage, TextField::ReceiveSender, TextField::SendMessage,
                                       TextField::SendUsers};
    for (bool hiding : {true, false}) {
        SCOPED_TRACE(hiding ? "press" : "release");
        view.shown.clear();
        hiding ? editor.PickerPressed() : editor.PickerReleased();
        ASSERT_GT(view.shown.size(), order.size());
        for (std::size_t i = 0; i < order.size(); ++i) {
            const EditorSurface& s = view.shown[i];
            EXPECT_TRUE(s.Label(TextField::ReceiveDate).visible);
            for (std::size_t j = 0; j < order.size(); ++j) {
                const bool visible = s.Label(order[j]).visible;
                EXPECT_EQ(visible, hiding ? j > i : j <= i) << i << ' ' << j;
                EXPECT_NE(s.Boxes(SideOf(order[j]))[s.TextFieldBox(order[j])].visible, visible);
            }
        }
    }
}

}  // namespace
}  // namespace skin::testing
