// Loading the side pictures, resetting a side, and resetting the whole editor.
#include "editortestsupport.h"

namespace skin::testing {
namespace {

TEST_F(EditorTest, PictureLoadRecordsTheChoiceACancelIsSilentAndAFailureKeepsThePrevious) {
    drawArea(Receive, 7, 100, 100, 300, 200);
    platform.openAnswers = {FileChoice{"/p/a.gif", "a.gif"}, std::nullopt, FileChoice{"/p/notes.txt", "notes.txt"}};
    editor.LoadSkinPicture(Receive);
    const FileDialogSettings& dialog = platform.openDialogs.at(0);
    EXPECT_EQ(dialog.filter, "Graphic Files (*.bmp; *.jpg; *.gif)|*.bmp; *.jpg; *.gif|All Files (*.*)|*.*|");
    EXPECT_EQ(dialog.filterIndex, 1);
    EXPECT_EQ(dialog.flags, 4);
    EXPECT_EQ(platform.picturesShown, (std::vector<std::pair<SkinSide, std::string>>{{Receive, "/p/a.gif"}}));
    EXPECT_TRUE(box(Receive, 0).visible);  // a new picture keeps the areas
    EXPECT_EQ(doc().Area(Receive, 7), (AreaRect{6235, 865, 300, 200}));
    editor.LoadSkinPicture(Receive);
    EXPECT_TRUE(platform.messages.empty());
    platform.picturesLoad = false;
    editor.LoadSkinPicture(Receive);
    ASSERT_EQ(platform.messages.size(), 1u);
    const FakePlatform::Message& m = platform.messages[0];
    EXPECT_EQ(m.text, "An Error has occured while loading the picture file.\r\n\r\nPicture file not loaded.");
    EXPECT_EQ(m.title, "Picture Load Error");
    EXPECT_TRUE(m.icon == MessageIcon::Exclamation && m.buttons == MessageButtons::Ok);
    EXPECT_EQ(doc().PictureFileName(Receive), "a.gif");
    EXPECT_EQ(doc().PicturePath(Receive), "/p/a.gif");
}

TEST_F(EditorTest, SideResetFreesTheSideAndSkipsBoxesThatDoNotExist) {
    editor.BeginArea(Send, 100, 100);  // box 0 growing, box count 0
    editor.ResetSide(Send);
    EXPECT_FALSE(box(Send, 0).visible);
    EXPECT_EQ(surface().Boxes(Send).size(), 1u);

    platform.openAnswers.push_back(FileChoice{"/p/r.bmp", "r.bmp"});
    editor.LoadSkinPicture(Receive);
    editor.ToggleLock();
    drawArea(Send, 5, 100, 100, 300, 200);
    drawArea(Receive, 0, 100, 100, 300, 200);
    drawArea(Receive, 2, 100, 400, 300, 200);
    drawArea(Receive, 7, 100, 700, 300, 200);
    editor.ResetSide(Receive);
    EXPECT_EQ(surface().Boxes(Receive).size(), 3u);  // box 3 does not exist: that step is skipped
    for (const BoxElement& b : surface().Boxes(Receive)) EXPECT_FALSE(b.visible);
    for (TextField f : {TextField::ReceiveDate, TextField::ReceiveMessage, TextField::ReceiveSender}) {
        EXPECT_EQ(label(f).rect.Top, kParkingTop);
        EXPECT_EQ(surface().TextFieldBox(f), -1);
    }
    EXPECT_EQ(label(TextField::ReceiveDate).rect.Left, 6235);  // only the Top moves
    EXPECT_TRUE(surface().menuEnabled[1][0]);
    EXPECT_EQ(doc().BoxCount(Receive), 0);
    EXPECT_EQ(doc().PictureFileName(Receive), "r.bmp");
    EXPECT_TRUE(box(Send, 0).visible);
    EXPECT_TRUE(doc().KindUsed(Send, 5));
    // The selection outlives the reset: a step writes the freed slot without using the kind.
    ASSERT_EQ(surface().currentSelection, Selection::Box(Receive, 2));
    editor.NudgeSelection(kArrowRight);
    EXPECT_EQ(doc().Area(Receive, 7), (AreaRect{6235, 1465, 310, 200}));
    EXPECT_FALSE(doc().KindUsed(Receive, 7));
    EXPECT_TRUE(surface().menuEnabled[1][7]);
    editor.SelectTextField(TextField::ReceiveDate);  // a parked label has no box: only it changes
    editor.NudgeSelection(kArrowUp);
    EXPECT_EQ(label(TextField::ReceiveDate).rect.Height, 190);
    EXPECT_EQ(doc().Area(Receive, 0), AreaRect{});
    // The next drag reuses box 0 and brings it to the front.
    drawArea(Receive, 2, 200, 200, 300, 200);
    EXPECT_EQ(surface().TextFieldBox(TextField::ReceiveMessage), 0);
    EXPECT_GT(box(Receive, 0).z, box(Receive, 2).z);
}

TEST_F(EditorTest, EditorResetReturnsTheToolsToTheirStart) {
    drawArea(Send, 0, 100, 100, 300, 200);
    platform.colourAnswers.push_back(0x00123456);
    editor.ChooseColour();
    editor.ToggleLock();
    editor.SetColourTarget(ColourRole::Text);
    editor.ArrowPressed(kArrowDown);
    editor.PickerPressed();

    editor.ResetEditor();
    EXPECT_FALSE(doc().KindUsed(Send, 0));
    EXPECT_EQ(label(TextField::SendUsers).rect, StartSurface().Label(TextField::SendUsers).rect);
    EXPECT_TRUE(label(TextField::SendUsers).visible);  // the picker had swapped it for its box
    EXPECT_TRUE(surface().menuEnabled[0][0]);
    EXPECT_EQ(surface().currSelText, "Current Selection:");
    EXPECT_EQ(surface().lockTag, "Lock_OFF");
    EXPECT_EQ(editor.ColourTarget(), ColourRole::Back);
    EXPECT_EQ(surface().swatch, 0x00FFFFFF);
    EXPECT_EQ(surface().dialogColour, 0);
    EXPECT_EQ(surface().arrowFaces[kArrowDown], "Down_OFF");
    EXPECT_EQ(surface().pickerFace, "Eye_OFF");
    EXPECT_FALSE(platform.moveTimer);
    EXPECT_FALSE(platform.colourTimer);
    EXPECT_FALSE(platform.pickerPointer);
    editor.MoveTimerTick();  // a tick already queued: the arrow is no longer held
    EXPECT_TRUE(platform.messages.empty());
}

}  // namespace
}  // namespace skin::testing
