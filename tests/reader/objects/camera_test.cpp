// Cameras: projection, field of view and aperture mode, clipping planes, zoom and aspect, the
// vendor apertures, animation targets, and the failures.

#include "tests/reader/nodes/scene_documents.h"
#include "tests/support/reader_fixture.h"

namespace {

using namespace zylsdk;

class CameraTest : public zyltest::ReaderTest {
 protected:
  // Imports a camera "cam" whose optics hold `optics`; the camera made, or null.
  KZylCamera* Import(const std::string& optics) {
    result = reader->ImportCamera(Parse("<camera id=\"cam\"><optics>" + optics + "</optics></camera>"));
    const auto& attributes = reader->GetState().nodeAttributes;
    return attributes.GetCount() ? static_cast<KZylCamera*>(attributes.Get(attributes.GetCount() - 1)) : nullptr;
  }
  KZylCamera* Perspective(const std::string& parameters) {
    return Import("<technique_common><perspective>" + parameters + "</perspective></technique_common>");
  }
  KZylCamera* Koru(const std::string& parameters) {
    return Import("<technique_common><perspective><yfov>30</yfov></perspective></technique_common>"
                  "<technique profile=\"KORU\">" + parameters + "</technique>");
  }
  bool result = false;
};

TEST_F(CameraTest, BothFieldsOfViewGiveModeZeroAndKeepTheDefaultFieldOfView) {
  KZylCamera* camera = Perspective("<xfov>45</xfov><yfov>30</yfov>");
  ASSERT_TRUE(result);
  ASSERT_NE(camera, nullptr);
  EXPECT_EQ(camera->GetApertureMode(), KZylCamera::eHorizAndVert);
  EXPECT_EQ(camera->GetDefaultFieldOfView(), KZylCamera::Create(&manager, "")->GetDefaultFieldOfView());
  EXPECT_EQ(Perspective("<xfov>50</xfov><yfov>30</yfov>")->GetDefaultFieldOfView(), 45.0);
}

TEST_F(CameraTest, OneFieldOfViewSetsItAndItsMode) {
  KZylCamera* horizontal = Perspective("<xfov>50</xfov>");
  EXPECT_EQ(horizontal->GetDefaultFieldOfView(), 50.0);
  EXPECT_EQ(horizontal->GetApertureMode(), KZylCamera::eHorizontal);
  KZylCamera* vertical = Perspective("<yfov>35</yfov>");
  EXPECT_EQ(vertical->GetDefaultFieldOfView(), 35.0);
  EXPECT_EQ(vertical->GetApertureMode(), KZylCamera::eVertical);
  EXPECT_EQ(vertical->GetProjectionType(), KZylCamera::ePerspective);
}

TEST_F(CameraTest, NeitherFieldOfViewChangesNothing) {
  KZylCamera* camera = Perspective("<znear>0.5</znear><zfar>500</zfar>");
  EXPECT_EQ(camera->GetApertureMode(), KZylCamera::eVertical);
  EXPECT_EQ(camera->GetNearPlane(), 0.5);
  EXPECT_EQ(camera->GetFarPlane(), 500.0);
}

TEST_F(CameraTest, OrthographicSetsTheZoomAndTheLaterMagnificationWins) {
  KZylCamera* camera = Import("<technique_common><orthographic><xmag>2</xmag><ymag>3</ymag></orthographic>"
                              "</technique_common>");
  EXPECT_EQ(camera->GetProjectionType(), KZylCamera::eOrthogonal);
  EXPECT_EQ(camera->GetOrthoZoom(), 3.0);
}

TEST_F(CameraTest, AnAspectRatioKeepsTheWidth) {
  KZylCamera* camera = Perspective("<aspect_ratio>2</aspect_ratio>");
  EXPECT_EQ(camera->GetAspectRatioMode(), KZylCamera::eWindowSize);
  EXPECT_EQ(camera->GetAspectWidth(), 640.0);
  EXPECT_EQ(camera->GetAspectHeight(), 320.0);
}

TEST_F(CameraTest, AnUnusableAspectRatioChangesNothing) {
  for (const char* ratio : {"0", "-2", "inf", "nan", "1e-320", ""}) {
    KZylCamera* camera = Perspective(std::string("<aspect_ratio>") + ratio + "</aspect_ratio>");
    EXPECT_EQ(camera->GetAspectWidth(), 640.0) << ratio;
    EXPECT_EQ(camera->GetAspectHeight(), 480.0) << ratio;
  }
}

TEST_F(CameraTest, SidesGiveTheAspectWithTheirSigns) {
  KZylCamera* camera = Perspective("<LEFT>-2</LEFT><RIGHT>3</RIGHT><TOP>1</TOP><BOTTOM>4</BOTTOM>");
  // Width RIGHT - LEFT, height BOTTOM - TOP.
  EXPECT_EQ(camera->GetAspectWidth(), 5.0);
  EXPECT_EQ(camera->GetAspectHeight(), 3.0);
  KZylCamera* flat = Perspective("<LEFT>-2</LEFT><RIGHT>3</RIGHT>");
  EXPECT_EQ(flat->GetAspectWidth(), 640.0);
}

TEST_F(CameraTest, AnUnknownProjectionReadsAsPerspective) {
  KZylCamera* camera = Import("<technique_common><fisheye><yfov>70</yfov></fisheye></technique_common>");
  ASSERT_TRUE(result);
  EXPECT_EQ(camera->GetProjectionType(), KZylCamera::ePerspective);
  EXPECT_EQ(camera->GetDefaultFieldOfView(), 70.0);
  EXPECT_EQ(CountMessage("Warning: unknown camera type: fisheye. Camera type will be set to Perspective."), 1);
}

TEST_F(CameraTest, UnknownParametersWarnOncePerName) {
  Perspective("<focus>1</focus><focus>2</focus>");
  Perspective("<focus>3</focus><blur>1</blur>");
  EXPECT_EQ(CountMessage("Warning: Unrecognized camera parameter: focus"), 1);
  EXPECT_EQ(CountMessage("Warning: Unrecognized camera parameter: blur"), 1);
}

TEST_F(CameraTest, VendorAperturesAreConvertedToInchesAndTruncated) {
  KZylCamera* camera = Koru("<vertical_aperture>2.54</vertical_aperture><horizontal_aperture>1</horizontal_aperture>"
                            "<lens_squeeze>2</lens_squeeze>");
  EXPECT_EQ(camera->GetApertureHeight(), 1.0);
  EXPECT_EQ(camera->GetApertureWidth(), 0.3937);
  EXPECT_EQ(camera->GetSqueezeRatio(), 2.0);
  // The vendor technique sets its own interest and distance, and leaves the field of view.
  EXPECT_EQ(camera->GetDefaultCameraInterestPosition(), KZylVector4(0, 0, -1, 1));
  EXPECT_EQ(camera->GetSpecificDistance(), 5.0);
  EXPECT_EQ(camera->GetDefaultFieldOfView(), 30.0);
}

TEST_F(CameraTest, HugeVendorAperturesStayFinite) {
  KZylCamera* camera = Koru("<vertical_aperture>1e307</vertical_aperture>");
  EXPECT_TRUE(std::isfinite(camera->GetApertureHeight()));
  EXPECT_GT(camera->GetApertureHeight(), 1e306);
}

TEST_F(CameraTest, UnknownVendorParametersWarnOncePerName) {
  Koru("<film_offset>1</film_offset><film_offset>1</film_offset>");
  EXPECT_EQ(CountMessage("Warning: Unrecognized KORU camera parameter: film_offset"), 1);
}

TEST_F(CameraTest, ParametersWithSidAreAnimationTargets) {
  Koru("<vertical_aperture sid=\"va\">1</vertical_aperture>");
  Perspective("<xfov sid=\"xfov\">50</xfov><znear>1</znear>");
  const auto& targets = reader->GetState().animationTargets;
  ASSERT_EQ(targets.GetCount(), 2);
  ASSERT_TRUE(targets.Contains("cam/xfov"));
  EXPECT_EQ(targets.Lookup("cam/xfov")->kind, "xfov");
  EXPECT_EQ(targets.Lookup("cam/xfov")->axis, 0);
  EXPECT_EQ(targets.Lookup("cam/va")->kind, "vertical_aperture");
}

TEST_F(CameraTest, TheCameraIsRegisteredUnderItsId) {
  KZylCamera* camera = Perspective("");
  ASSERT_TRUE(reader->GetState().nodeAttributes.Contains("cam"));
  EXPECT_EQ(reader->GetState().nodeAttributes.Lookup("cam"), camera);
  EXPECT_EQ(camera->GetName(), "");
}

TEST_F(CameraTest, AMissingOpticsFails) {
  EXPECT_FALSE(reader->ImportCamera(Parse("<camera id=\"cam\"><extra/></camera>")));
  EXPECT_EQ(CountMessage("ERROR: Camera node cam has no <optics> node."), 1);
  EXPECT_FALSE(reader->GetState().nodeAttributes.Contains("cam"));
}

TEST_F(CameraTest, AMissingCommonTechniqueFails) {
  Import("<technique profile=\"KORU\"/>");
  EXPECT_FALSE(result);
  EXPECT_EQ(CountMessage("ERROR: no <technique> node found for camera node cam"), 1);
}

TEST(CameraDocument, AMissingCommonTechniqueFailsTheWholeRead) {
  zyldae::ReadResult read = zyltest::ReadText(zyltest::SceneDocument(
      "<library_cameras><camera id=\"cam\"><optics/></camera></library_cameras>", "<node id=\"a\"/>"));
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(zyltest::CountMessage(read, "ERROR: no <technique> node found for camera node cam"), 1);
  EXPECT_EQ(read.scene->GetRootNode()->GetChildCount(), 0);
}

TEST(CameraDocument, AMissingOpticsFailsTheWholeRead) {
  zyldae::Json dump = zyltest::DumpText(zyltest::SceneDocument(
      "<library_cameras><camera id=\"cam\"/></library_cameras>", "<node id=\"a\"/>"));
  EXPECT_EQ(dump["ok"], false);
  EXPECT_EQ(dump["notifications"][0]["text"], "ERROR: Camera node cam has no <optics> node.");
}

TEST(CameraDocument, TheDumpShowsTheInstancedCamera) {
  zyldae::Json dump = zyltest::DumpText(zyltest::SceneDocument(
      "<library_cameras><camera id=\"cam\"><optics><technique_common><perspective><xfov>40</xfov>"
      "<aspect_ratio>1.6</aspect_ratio><znear>2</znear></perspective></technique_common>"
      "<technique profile=\"KORU\"><vertical_aperture>1</vertical_aperture></technique></optics></camera>"
      "</library_cameras>",
      "<node id=\"eye\"><instance_camera url=\"#cam\"/></node>"));
  ASSERT_EQ(dump["ok"], true);
  const zyldae::Json* eye = zyltest::FindDumpNode(dump["scene"]["root"], "eye");
  ASSERT_NE(eye, nullptr);
  const zyldae::Json& camera = (*eye)["attribute"];
  EXPECT_EQ(camera["type"], "camera");
  EXPECT_EQ(camera["fieldOfView"], 40.0);
  EXPECT_EQ(camera["apertureMode"], 1);
  EXPECT_EQ(camera["aspect"]["height"], 400.0);
  EXPECT_EQ(camera["nearPlane"], 2.0);
  EXPECT_EQ(camera["apertureHeight"], 0.3937);
  EXPECT_EQ(camera["specificDistance"], 5.0);
}

}  // namespace
