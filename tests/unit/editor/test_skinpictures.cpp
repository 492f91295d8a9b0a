// Loading the side pictures, resetting a side, and resetting the whole editor.
#include "editortestsupport.h"

namespace skin::testing {
namespace {

constexpr SkinSide Send = SkinSide::Send;
constexpr SkinSide Receive = SkinSide::Receive;


TEST_F(EditorTest, LoadPictureChosenPictureIsShownAndRecorded) {
    platform.openAnswers.push_back(FileChoice{"/home/d/skins/send.bmp", "send.bmp"});
    editor.LoadSkinPicture(Send);
    ASSERT_EQ(platform.openDialogs.size(), 1u);
    const FileDialogSettings& s = platform.openDialogs[0];
    EXPECT_EQ(s.filter, "Graphic Files (*.bmp; *.jpg; *.gif)|*.bmp; *.jpg; *.gif|All Files (*.*)|*.*|");
    EXPECT_EQ(s.filterIndex, 1);
    EXPECT_EQ(s.flags, 4);
    EXPECT_EQ(platform.picturesShown, (std::vector<std::pair<SkinSide, std::string>>{{Send, "/home/d/skins/send.bmp"}}));
    EXPECT_EQ(doc().PictureFileName(Send), "send.bmp");
    EXPECT_EQ(doc().PicturePath(Send), "/home/d/skins/send.bmp");
    EXPECT_TRUE(doc().PictureFileName(Receive).empty());
    EXPECT_TRUE(platform.messages.empty());
    editor.LoadSkinPicture(Receive);  // cancelled: silent, nothing changes
    EXPECT_EQ(platform.log.back(), "open dialog");
    EXPECT_TRUE(doc().PicturePath(Receive).empty());
}

TEST_F(EditorTest, LoadPictureNewPictureKeepsTheAreasAndAnUnreadableOneShowsTheMessageAndKeepsThePrevious) {
    platform.openAnswers = {FileChoice{"/p/a.gif", "a.gif"}, FileChoice{"/p/notes.txt", "notes.txt"}};
    drawArea(Receive, 7, 100, 100, 300, 200);
    editor.LoadSkinPicture(Receive);
    EXPECT_TRUE(box(Receive, 0).visible);  // a new picture keeps the areas
    EXPECT_EQ(doc().Area(Receive, 7), (AreaRect{6235, 865, 300, 200}));
    platform.picturesLoad = false;
    editor.LoadSkinPicture(Receive);
    ASSERT_EQ(platform.messages.size(), 1u);
    EXPECT_EQ(platform.messages[0].text,
              "An Error has occured while loading the picture file.\r\n\r\nPicture file not loaded.");
    EXPECT_EQ(platform.messages[0].title, "Picture Load Error");
    EXPECT_EQ(platform.messages[0].icon, MessageIcon::Exclamation);
    EXPECT_EQ(platform.messages[0].buttons, MessageButtons::Ok);
    EXPECT_EQ(doc().PictureFileName(Receive), "a.gif");
    EXPECT_EQ(doc().PicturePath(Receive), "/p/a.gif");
}


TEST_F(EditorTest, ResetSideReceiveSideWithThreeNamedAreas) {
    platform.openAnswers.push_back(FileChoice{"/p/r.bmp", "r.bmp"});
    editor.LoadSkinPicture(Receive);
    drawArea(Send, 5, 100, 100, 300, 200);
    drawArea(Receive, 0, 100, 100, 300, 200);
    drawArea(Receive, 2, 100, 400, 300, 200);
    drawArea(Receive, 3, 100, 700, 300, 200);
    const Selection selected = surface().currentSelection;
    editor.ResetSide(Receive);

    for (const BoxElement& b : surface().Boxes(Receive)) EXPECT_FALSE(b.visible);
    for (TextField f : {TextField::ReceiveDate, TextField::ReceiveMessage, TextField::ReceiveSender}) {
        EXPECT_FLOAT_EQ(label(f).rect.Top, kParkingTop);
        EXPECT_EQ(surface().TextFieldBox(f), -1);
    }
    EXPECT_FLOAT_EQ(label(TextField::ReceiveDate).rect.Left, 6235);  // only the Top moves
    for (int k = 0; k < kAreaKinds; ++k) {
        EXPECT_TRUE(surface().menuEnabled[1][k]);
        EXPECT_FALSE(doc().KindUsed(Receive, k));
        EXPECT_EQ(doc().Area(Receive, k), AreaRect{});
    }
    EXPECT_EQ(doc().BoxCount(Receive), 0);
    EXPECT_EQ(surface().currentSelection, selected);
    EXPECT_EQ(doc().PictureFileName(Receive), "r.bmp");
    // The Send side is untouched.
    EXPECT_TRUE(box(Send, 0).visible);
    EXPECT_TRUE(doc().KindUsed(Send, 5));
    EXPECT_EQ(doc().BoxCount(Send), 1);
    EXPECT_FLOAT_EQ(label(TextField::SendUsers).rect.Top, LabelStartTop(TextField::SendUsers));

    drawArea(Receive, 2, 200, 200, 300, 200);  // the next drag uses box 0 again
    EXPECT_EQ(surface().TextFieldBox(TextField::ReceiveMessage), 0);
    EXPECT_EQ(surface().Boxes(Receive).size(), 3u);
}

TEST_F(EditorTest, ResetSideEmptySideOnlyHidesBoxZero) {
    editor.BeginArea(Send, 100, 100);  // a growing box 0, not yet released
    editor.ResetSide(Send);
    EXPECT_FALSE(box(Send, 0).visible);
    EXPECT_EQ(surface().Boxes(Send).size(), 1u);
    EXPECT_FLOAT_EQ(label(TextField::SendMessage).rect.Top, kParkingTop);
}


TEST_F(EditorTest, ResetEditorEverythingReturnsToStartUp) {
    platform.openAnswers.push_back(FileChoice{"/p/s.bmp", "s.bmp"});
    editor.LoadSkinPicture(Send);
    editor.Document().SetSkinName("Blue");
    drawArea(Send, 0, 100, 100, 300, 200);
    drawArea(Receive, 4, 100, 100, 300, 200);
    drag(Receive, 100, 400, 300, 600, std::nullopt);
    platform.colourAnswers.push_back(0x00123456);
    editor.ChooseColour();
    editor.ToggleLock();
    editor.SetColourTarget(ColourRole::Text);
    editor.ArrowPressed(kArrowDown);
    editor.PickerPressed();

    editor.ResetEditor();
    const EditorSurface start = StartSurface();
    EXPECT_TRUE(doc().SkinName().empty());
    EXPECT_TRUE(doc().PictureFileName(Send).empty());
    EXPECT_EQ(doc().BoxCount(Send), 0);
    EXPECT_EQ(doc().BoxCount(Receive), 0);
    EXPECT_EQ(doc().Colour(TextField::SendUsers, ColourRole::Back), kLightGrey);
    for (const auto& list : surface().boxes) {
        ASSERT_EQ(list.size(), 1u);
        EXPECT_FALSE(list[0].visible);
    }
    for (int f = 0; f < kTextFields; ++f) {
        EXPECT_EQ(surface().labels[f].rect, start.labels[f].rect);
        EXPECT_TRUE(surface().labels[f].visible);
        EXPECT_FALSE(surface().labels[f].border);
        EXPECT_EQ(surface().textFieldBox[f], -1);
    }
    EXPECT_EQ(surface().menuEnabled, start.menuEnabled);
    EXPECT_EQ(surface().currentSelection, Selection::None());
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
    // A tick that was already queued does nothing once the arrow is no longer held.
    editor.MoveTimerTick();
    EXPECT_TRUE(platform.messages.empty());
}

TEST(EditorStart, SurfaceAsTheWindowStarts) {
    const EditorSurface s = StartSurface();
    EXPECT_EQ(s.pictureFrames[0], (RectF{285, 765, 5430, 3870}));
    EXPECT_EQ(s.pictureFrames[1], (RectF{6135, 765, 5430, 3285}));
    const std::vector<std::pair<TextField, float>> tops{{TextField::SendMessage, 6390},
                                                       {TextField::SendUsers, 6930},
                                                       {TextField::ReceiveMessage, 7365},
                                                       {TextField::ReceiveDate, 7830},
                                                       {TextField::ReceiveSender, 8145}};
    for (auto [f, top] : tops) {
        EXPECT_EQ(s.Label(f).rect, (RectF{1860, top, 1200, 255})) << LabelName(f);
        EXPECT_GT(s.Label(f).rect.Top, kSurfaceHeight);
    }
    EXPECT_EQ(s.Label(TextField::SendUsers).caption, " [ ] User List");
    EXPECT_EQ(s.Label(TextField::ReceiveSender).tag, "Receive");
    EXPECT_TRUE(s.Label(TextField::ReceiveDate).transparent);
    EXPECT_FALSE(s.Label(TextField::ReceiveMessage).transparent);
    EXPECT_EQ(s.arrowFaces, (std::array<std::string, kArrows>{"Left_OFF", "Up_OFF", "Right_OFF", "Down_OFF"}));
}

}  // namespace
}  // namespace skin::testing
