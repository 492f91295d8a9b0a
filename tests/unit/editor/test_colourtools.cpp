// The colour target switch, the colour dialog and the screen colour picker.
#include "editortestsupport.h"

namespace skin::testing {
namespace {

constexpr SkinSide Send = SkinSide::Send;
constexpr SkinSide Receive = SkinSide::Receive;
constexpr OleColour kRed = 0x000000FF;
constexpr OleColour kTeal = 0x00808000;


TEST_F(EditorTest, ColourTargetSwitchesTagsAndAppliesOnlyToTheSelectedLabelsTargetColour) {
    EXPECT_EQ(surface().mapTag, "Map_ON");
    EXPECT_EQ(surface().textTag, "Text_OFF");
    EXPECT_EQ(editor.ColourTarget(), ColourRole::Back);
    drawArea(Receive, 1, 100, 100, 300, 200);
    editor.SetColourTarget(ColourRole::Text);
    EXPECT_EQ(surface().mapTag, "Map_OFF");
    EXPECT_EQ(surface().textTag, "Text_ON");
    editor.ApplyColour(kRed);
    EXPECT_EQ(doc().Colour(TextField::ReceiveSender, ColourRole::Text), kRed);
    EXPECT_EQ(doc().Colour(TextField::ReceiveSender, ColourRole::Back), kSystemWindowBackground);
    editor.SetColourTarget(ColourRole::Back);
    EXPECT_EQ(surface().textTag, "Text_OFF");
    editor.ApplyColour(kTeal);
    EXPECT_EQ(doc().Colour(TextField::ReceiveSender, ColourRole::Back), kTeal);
    EXPECT_EQ(doc().Colour(TextField::ReceiveSender, ColourRole::Text), kRed);
}


TEST_F(EditorTest, ColourDialogStartsOnItsLastColourAndSetsSwatchAndSelection) {
    drawArea(Send, 1, 100, 100, 300, 200);
    platform.colourAnswers = {kRed, std::nullopt, kTeal};
    editor.ChooseColour();
    EXPECT_EQ(surface().swatch, kRed);
    EXPECT_EQ(doc().Colour(TextField::SendMessage, ColourRole::Back), kRed);
    editor.ChooseColour();  // cancelled: nothing moves, the remembered colour stays
    EXPECT_EQ(surface().swatch, kRed);
    editor.ChooseColour();
    EXPECT_EQ(platform.colourDialogStarts, (std::vector<OleColour>{0, kRed, kRed}));
    EXPECT_EQ(doc().Colour(TextField::SendMessage, ColourRole::Back), kTeal);
}

TEST_F(EditorTest, ColourDialogWithABoxOrNothingSelectedOnlyTheSwatchChanges) {
    platform.colourAnswers = {kRed, kTeal};
    editor.ChooseColour();
    EXPECT_EQ(surface().swatch, kRed);
    drawArea(Send, 2, 100, 100, 300, 200);
    editor.ChooseColour();
    EXPECT_EQ(surface().swatch, kTeal);
    for (int f = 0; f < kTextFields; ++f)
        for (ColourRole role : {ColourRole::Back, ColourRole::Text})
            EXPECT_EQ(doc().Colour(TextField(f), role), SkinDocument::InitialColour(TextField(f), role));
}


TEST_F(EditorTest, PickerSampledColourOrTheUntouchedSwatchIsAppliedOnRelease) {
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
    // A release before any tick applies the swatch as it was.
    drawArea(Send, 1, 100, 100, 300, 200);
    editor.SetColourTarget(ColourRole::Text);
    editor.PickerPressed();
    editor.PickerReleased();
    EXPECT_EQ(doc().Colour(TextField::SendMessage, ColourRole::Text), kRed);
}


// Which labels are hidden in each surface the view was shown while the picker swapped them.
std::vector<TextField> swapOrder(const std::vector<EditorSurface>& shown, bool hiding) {
    std::vector<TextField> order;
    for (std::size_t i = 1; i < shown.size(); ++i) {
        for (int f = 0; f < kTextFields; ++f) {
            const bool before = shown[i - 1].labels[f].visible;
            const bool after = shown[i].labels[f].visible;
            if (before != after && after != hiding) {
                order.push_back(TextField(f));
                const int boxIndex = shown[i].textFieldBox[f];
                EXPECT_EQ(shown[i].Boxes(SideOf(TextField(f)))[boxIndex].visible, hiding);
            }
        }
    }
    return order;
}

TEST_F(EditorTest, PickerSwapsLabelsForTheirBoxesInTheFixedOrder) {
    drawArea(Send, 0, 100, 100, 300, 200);
    drawArea(Send, 1, 100, 400, 300, 200);
    drawArea(Receive, 0, 100, 100, 300, 200);
    drawArea(Receive, 1, 100, 400, 300, 200);
    drawArea(Receive, 2, 100, 700, 300, 200);
    const std::vector<TextField> expected{TextField::ReceiveMessage, TextField::ReceiveSender, TextField::ReceiveDate,
                                          TextField::SendMessage, TextField::SendUsers};
    view.shown = {surface()};
    editor.PickerPressed();
    EXPECT_EQ(swapOrder(view.shown, true), expected);
    for (const LabelElement& l : surface().labels) EXPECT_FALSE(l.visible);
    view.shown = {surface()};
    editor.PickerReleased();
    EXPECT_EQ(swapOrder(view.shown, false), expected);
    for (const LabelElement& l : surface().labels) EXPECT_TRUE(l.visible);
    for (const auto& list : surface().boxes)
        for (const BoxElement& b : list) EXPECT_FALSE(b.visible);
}

TEST_F(EditorTest, PickerNoMirroredBoxesNoSwap) {
    drawArea(Receive, 0, 100, 100, 300, 200);
    editor.ResetSide(Receive);
    editor.PickerPressed();
    for (const LabelElement& l : surface().labels) EXPECT_TRUE(l.visible);
    EXPECT_FALSE(box(Receive, 0).visible);
    editor.PickerReleased();
}

}  // namespace
}  // namespace skin::testing
