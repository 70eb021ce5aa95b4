// What the check says of the picture files of a profile.
#include "tests/support/gif_maker.h"
#include "tests/support/picture_files.h"
#include "tests/unit/companion/profile_check_fixture.h"

using companion::Severity;

namespace {

class ProfileCheckImages : public ProfileCheckTest {
  protected:
    static std::string Image(const std::string& strMore = "ContentSizeW=\"200\" ContentSizeH=\"100\"",
                             const std::string& strName = "a") {
        return "<Image IsShow=\"1\" Name=\"" + strName + "\" ImageFileName=\"cat.bmp\" " + strMore + "/>";
    }
    void WritePicture(unsigned uWidth, unsigned uHeight) {
        WriteFile("Profiles/Mine/cat.bmp",
                  picture_files::Bmp(uWidth, uHeight, [](auto, auto) { return 1u; }));
    }
    static std::string Sized(int w, int h, const std::string& strMore = {}) {
        return "ContentSizeW=\"" + std::to_string(w) + "\" ContentSizeH=\"" + std::to_string(h) + "\" " +
               strMore;
    }
};

TEST_F(ProfileCheckImages, APictureThatFitsItsBoxIsFine) {
    WritePicture(400, 200);
    CheckItems(Image());
    EXPECT_TRUE(IsClean());
    CheckItems(Image(Sized(100, 200, "TiltDegree=\"90\"")));
    EXPECT_TRUE(IsClean());
    CheckItems(Image(Sized(150, 150, "TiltDegree=\"45\"")));
    EXPECT_TRUE(IsClean()) << "one that is turned leaves corners in any box";
}

TEST_F(ProfileCheckImages, AMissingFileIsAnError) {
    CheckItems(Image());
    EXPECT_TRUE(SaidError(5, "there is no file \"cat.bmp\""));
    EXPECT_FALSE(m_findings.Passes());
}

TEST_F(ProfileCheckImages, AFileThatIsNoPictureIsAnErrorWithTheReason) {
    WriteFile("Profiles/Mine/cat.bmp", "no picture");
    CheckItems(Image());
    EXPECT_TRUE(SaidError(5, "\"cat.bmp\" cannot be shown: "));
}

TEST_F(ProfileCheckImages, APictureWithTooManyPixelsIsAnError) {
    std::string strFile = picture_files::Bmp(4, 4, [](auto, auto) { return 1u; });
    strFile.replace(18, 8, picture_files::Low(60000) + picture_files::Low(60000));
    WriteFile("Profiles/Mine/cat.bmp", strFile);
    CheckItems(Image());
    EXPECT_TRUE(SaidError(5, "cannot be shown: "));
    EXPECT_TRUE(SaidError(5, "pixels"));
}

TEST_F(ProfileCheckImages, AProportionThatLeavesBarsIsNoted) {
    WritePicture(400, 400);
    CheckItems(Image());
    EXPECT_TRUE(
        SaidNote(5, "is 400 by 400 and leaves bars in its box of 200 by 100: 100 units of its width"));
    WritePicture(400, 200);
    CheckItems(Image(Sized(200, 130)));
    EXPECT_TRUE(SaidNote(5, "30 units of its height stay empty"));
    CheckItems(Image(Sized(200, 100, "TiltDegree=\"-90\"")));
    EXPECT_TRUE(SaidNote(5, "is 400 by 200, turned, and leaves bars"));
    CheckItems(Image(Sized(200, 101)));
    EXPECT_TRUE(IsClean()) << "less than a unit is rounding";
}

TEST_F(ProfileCheckImages, AnEnlargedPictureIsNoted) {
    WritePicture(100, 50);
    CheckItems(Image());
    EXPECT_TRUE(SaidNote(5, "is 100 by 50 and is enlarged to its box of 200 by 100"));
}

TEST_F(ProfileCheckImages, AnAnimationOfMoreThanAThousandFramesIsCut) {
    CGifMaker gif(2, 1);
    for (int i = 0; i < 1000; ++i) gif.Frame(0, 0, 2, 1, "AB");
    WriteFile("Profiles/Mine/cat.bmp", gif.File());
    CheckItems(Image(Sized(2, 1)));
    EXPECT_TRUE(IsClean());
    gif.Frame(0, 0, 2, 1, "AB");
    WriteFile("Profiles/Mine/cat.bmp", gif.File());
    CheckItems(Image(Sized(2, 1)));
    EXPECT_TRUE(SaidWarning(5, "an animation of 1001 frames, of which the first 1000 are shown"));
}

TEST_F(ProfileCheckImages, APictureThatTakesMuchMemoryIsAWarning) {
    WritePicture(4096, 4096);
    CheckItems(Image(Sized(1000, 1000)));
    EXPECT_TRUE(SaidWarning(5, "takes 64 MiB"));
}

TEST_F(ProfileCheckImages, ARawPictureBesideItWins) {
    WritePicture(400, 200);
    WriteFile("Profiles/Mine/cat.bmp.cache", picture_files::Raw(4, 2, 0));
    CheckItems(Image());
    EXPECT_TRUE(SaidWarning(5, "has a raw picture beside it, which wins"));
    EXPECT_TRUE(SaidWarning(5, "always \"Screenshot.png.cache\" of the data folder"));
}

TEST_F(ProfileCheckImages, ABoxWithoutASizeOrAnOpacityShowsNothing) {
    WritePicture(400, 200);
    CheckItems(Image(Sized(0, 100)));
    EXPECT_TRUE(SaidWarning(5, "ContentSizeW or ContentSizeH is 0"));
    EXPECT_TRUE(SaidWarning(4, "no item of the profile can be seen"));
    CheckItems(Image(Sized(200, 100, "ImageColorA=\"2\"")));
    EXPECT_TRUE(SaidWarning(4, "no item of the profile can be seen"));
}

TEST_F(ProfileCheckImages, AnImageOutsideThePictureIsTold) {
    WritePicture(400, 200);
    CheckItems(Image(Sized(200, 100, "FrameSizeW=\"200\" FrameSizeH=\"100\" FrameAnchorX=\"-300\"")));
    EXPECT_TRUE(SaidError(5, "Image \"a\" lies outside the picture"));
}

TEST_F(ProfileCheckImages, APhotoIsKnownAndNeedsItsFile) {
    const auto check = [this](const std::string& strPhoto) {
        Write("<OSD LayoutStyle=\"2\">\n<CustomLayout><Settings>\n<Preview AspectRatio=\"16:9\"/>" +
              strPhoto + "\n<Info>\n" + Text("t") + "</Info></Settings></CustomLayout></OSD>\n");
        Check();
    };
    check("<Photo IsShow=\"1\" Filename=\"cat.bmp\" Anchor=\"9\" PhotoOpacity=\"100\"/>");
    EXPECT_TRUE(SaidError(3, "Photo: there is no file \"cat.bmp\""));
    WritePicture(4, 4);
    check("<Photo IsShow=\"1\" Filename=\"cat.bmp\" Anchor=\"9\" PhotoOpacity=\"100\"/>");
    EXPECT_TRUE(IsClean());
    check("<Photo IsShow=\"0\" Filename=\"none.bmp\"/>");
    EXPECT_TRUE(IsClean());
    check("<Photo IsShow=\"1\" PhotoOpacity=\"101\"/>");
    EXPECT_TRUE(SaidError(3, "PhotoOpacity"));
}

TEST_F(ProfileCheckImages, ThereArePlacesForSixtyTwo) {
    WritePicture(400, 200);
    std::string strItems;
    for (int i = 0; i < 62; ++i) strItems += Image(Sized(200, 100), "i" + std::to_string(i));
    CheckItems(strItems);
    EXPECT_TRUE(IsClean());
    CheckItems(strItems + Image(Sized(200, 100), "last"));
    EXPECT_TRUE(SaidError(4, "the layout has 63 images of which 62 can be"));
}

} // namespace
