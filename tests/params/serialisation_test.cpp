#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <cmath>
#include <iomanip>
#include <sstream>

#include "params/ValueTraits.h"
#include "tests/params/Values.h"
#include "tests/support/GroupingLocale.h"
#include "tests/support/Hex.h"

namespace Kestova {
namespace {

using Text = Attribute<std::string>;

std::string xmlOf(const XMLable& object, int indent = 0, const std::string& prefix = "") {
  std::ostringstream out;
  XMLOptions options(out);
  object.toXML(options, indent, prefix);
  return out.str();
}

template <class T>
std::string jsonOf(const Parameter<T>& parameter, int indent = 0, const std::string& leading = "",
                   const std::string& namePrefix = "") {
  std::ostringstream out;
  parameter.toJSON(JSONOptions(out), indent, leading, namePrefix);
  return out.str();
}

// Three values per type that are hard to write.
template <class T>
std::vector<T> hardValues() {
  return {valueOf<T>(-1), valueOf<T>(2), valueOf<T>(2147483647)};
}
template <>
std::vector<double> hardValues() {
  return {0.1, -1e300, std::numeric_limits<double>::infinity()};
}
template <>
std::vector<int64> hardValues() {
  return {std::numeric_limits<int64>::min(), 0, std::numeric_limits<int64>::max()};
}
template <>
std::vector<std::string> hardValues() {
  return {"", "<a href=\"x\">'&'</a>", std::string("tab\tline\nnul\0bad\xFF \xE2\x82\xAC", 20)};
}
template <>
std::vector<Point> hardValues() {
  return {{-5, 7, 0}, {0.1, 1234567.25, -0.0}, {1e21, 1.0 / 3, 0}};
}
template <>
std::vector<Rect<float>> hardValues() {
  return {{0, 0, 1920, 1080}, {-0.5F, 16777216.0F, 1e-7F, 0.1F}, {}};
}
template <>
std::vector<std::list<Rect<float>>> hardValues() {
  return {{}, {{1, 2, 3, 4}}, {{1, 2, 3, 4}, {-0.5F, 0, 0, 7}}};
}

template <class Value>
class Serialisation : public Fixture<Value> {
 protected:
  void SetUp() override {
    auto& parameter = *this->shared;
    const auto values = hardValues<Value>();
    parameter.identifier()->setValue("screen.position");
    parameter.addKeyFrame(time(10), values[0], time(0));
    parameter.addKeyFrame(time(20), values[1], time(4));
    parameter.addKeyFrame(time(51, 2), values[2], time(1, 3));
    const auto keyFrame = parameter.keyFrameAt(time(20));
    keyFrame->addMetaData("b", Text("<2>", this->project));
    keyFrame->addMetaData("a \"quoted\"", Text("1", this->project));
    parameter.addMetaData("never", Text("written", this->project));
  }
};
TYPED_TEST_SUITE(Serialisation, ValueTypes, TypeNames);

template <class Value>
void expectDocuments(Parameter<Value>& parameter) {
  const std::string name = std::string("serialised/") + ValueTraits<Value>::kTypeName;
  const std::string xml = xmlOf(parameter, 1);
  EXPECT_EQ(xml, testing_support::dataFile(name + ".xml"));

  const auto values = hardValues<Value>();
  parameter.setValueBounds(
      boost::make_shared<ValueBounds<Value>>(ValueBounds<Value>{values[0], values[1], values[2]}));
  parameter.setUiHints(boost::make_shared<UiHints>(UiHints{3, -4}));
  EXPECT_EQ(jsonOf(parameter, 1, ",\n", "screen."), testing_support::dataFile(name + ".json"));
}

TYPED_TEST(Serialisation, MatchesTheGoldenFiles) {
  expectDocuments(*this->shared);
}

TYPED_TEST(Serialisation, DoesNotFollowTheGlobalLocale) {
  const testing_support::GroupingLocale locale;
  expectDocuments(*this->shared);
}

TEST(ValueText, DoesNotFollowTheStream) {
  const testing_support::GroupingLocale locale;
  KeystrokeData key;
  key.setCharacter(0x1F600);
  key.setEventFlags(-1234567);
  std::ostringstream out;
  out << std::hex << std::showpos << std::fixed << std::setprecision(2);
  out << Rect<float>(1234.5F, 1e7F, -0.0F, 1234567) << Rect<int>(1234, -5678, 0, 1 << 30) << key
      << Point(1234.5, 0.25, 1e22) << RationalTime(12345, 2);
  EXPECT_EQ(out.str(),
            "(1234.5,1e+07,-0,1.23457e+06)(1234,-5678,0,1073741824)(128512,-1234567)"
            "(1234.5,0.25,1e+22)12345/2");
}

TYPED_TEST(Serialisation, IsReadByAnXmlParser) {
  std::istringstream in(xmlOf(*this->shared, 1));
  boost::property_tree::ptree tree;
  boost::property_tree::read_xml(in, tree);
  const auto& keyFrames = tree.get_child("Parameter.Keyframes");
  ASSERT_EQ(keyFrames.size(), 3U);
  const auto& second = std::next(keyFrames.begin())->second;
  EXPECT_EQ(second.get<std::string>("<xmlattr>.time"), "20");
  EXPECT_EQ(second.get<std::string>("<xmlattr>.leadInLength"), "4");
  const auto& first = second.begin();
  EXPECT_EQ(std::next(first)->second.get<std::string>("<xmlattr>.key"), "a \"quoted\"");
  EXPECT_EQ(std::next(first, 2)->second.get<std::string>("<xmlattr>.value"), "<2>");
}

class JsonForms : public Fixture<int> {
 protected:
  std::string named(const std::string& name) {
    shared->identifier()->setValue(name);
    return jsonOf(*shared);
  }
};

TEST_F(JsonForms, OfASingleKeyframeAreItsValue) {
  expectRefusal(time(0), "name", [&] { jsonOf(*shared); });
  shared->addKeyFrame(time(10), 7, time(0));
  EXPECT_EQ(jsonOf(*shared), "\"name\" : 7");
  EXPECT_EQ(jsonOf(*shared, 2, "lead", "na"), "lead    \"me\" : 7");
  EXPECT_EQ(jsonOf(*shared, 0, "", "ame"), "\"name\" : 7");
  EXPECT_EQ(named("a \"raw\" key"), "\"a \"raw\" key\" : 7");

  const std::string whole =
      " : {\n"
      "  \"type\" : \"int\",\n"
      "  \"keyframes\" : [\n"
      "    {\n"
      "      \"time\" : 10,\n"
      "      \"value\" : 7,\n"
      "      \"duration\" : 0\n"
      "    }\n"
      "  ]\n"
      "}";
  for (const char* const name : {"toc", "quiz", "captions", "captionData"}) {
    EXPECT_EQ(named(name), '"' + std::string(name) + '"' + whole);
  }
  EXPECT_EQ(named("quizzes"), "\"quizzes\" : 7");
  shared->setUiHints(boost::make_shared<UiHints>());
  EXPECT_EQ(named("hinted"), "\"hinted\" : 7");
}

TEST_F(JsonForms, OfBoundsWithoutKeyframesAreObjects) {
  shared->setValueBounds(boost::make_shared<ValueBounds<int>>());
  EXPECT_EQ(jsonOf(*shared),
            "\"name\" : {\n"
            "  \"type\" : \"int\",\n"
            "  \"valueBounds\" : {\n"
            "    \"minValue\" : 0,\n"
            "    \"maxValue\" : 0,\n"
            "    \"defaultValue\" : 0\n"
            "  }\n"
            "}");
}

TEST_F(JsonForms, OfASingleKeyframeWithALeadInAreObjects) {
  shared->addKeyFrame(time(10), 7, time(4));
  EXPECT_EQ(jsonOf(*shared).substr(0, 12), "\"name\" : {\n ");
}

TEST_F(JsonForms, OfPointsHaveNoValueText) {
  LeftParameter<Point> parameter({}, "p", nullptr);
  parameter.addKeyFrame(time(0), {1, 2, 0}, time(0));
  EXPECT_EQ(jsonOf(parameter), "\"p\" : ");
}

TEST(Numbers, AreTheShortestJsonThatReadsBackTheSame) {
  EXPECT_EQ(json_representation(0.1), "0.1");
  EXPECT_EQ(json_representation(1.0 / 3), "0.3333333333333333");
  EXPECT_EQ(json_representation(5e-324), "5e-324");
  EXPECT_EQ(json_representation(-0.0), "-0");
  EXPECT_EQ(json_representation(std::nan("")), "null");
  EXPECT_EQ(json_representation(-std::numeric_limits<double>::infinity()), "null");
  EXPECT_EQ(json_representation(time(42, 4)), "\"21/2\"");
}

TEST(Numbers, InXmlHaveSeventeenDigitsAndSignedWords) {
  using Traits = ValueTraits<double>;
  using View = std::string_view;
  EXPECT_EQ(View(Traits::xmlText(0.1)), "0.10000000000000001");
  EXPECT_EQ(View(Traits::xmlText(3)), "3");
  EXPECT_EQ(View(Traits::xmlText(std::nan(""))), "nan");
  EXPECT_EQ(View(Traits::xmlText(-std::nan(""))), "-nan");
  EXPECT_EQ(View(Traits::xmlText(-std::numeric_limits<double>::infinity())), "-inf");
}

TEST(XmlForms, OfEmptyParametersAreOneTag) {
  const LeftParameter<int> parameter({}, "p", nullptr);
  EXPECT_EQ(xmlOf(parameter, 1), "  <Parameter/>\n");
  EXPECT_EQ(xmlOf(parameter, 0, "k:"), "<k:Parameter/>\n");
}

TEST(XmlForms, OfAttributesHaveNoBody) {
  const Text attribute("a < \"b\"", {});
  EXPECT_EQ(xmlOf(attribute), "<Attribute value=\"a &lt; &quot;b&quot;\"/>\n");
}

TEST(XmlForms, OfKeyframesNameTheirOwnInterpolater) {
  KeyFrame<int> keyFrame({}, time(1), 2, time(3, 2));
  keyFrame.setInterpolater(LeftInterpolater<int>::getInstance());
  EXPECT_EQ(xmlOf(keyFrame),
            "<Keyframe  time=\"1\" value=\"2\" leadInLength=\"3/2\"  interpolater=\"left\" />\n");
}

TEST(XmlForms, AreCompleteAtAnySize) {
  LeftParameter<int> parameter({}, "p", nullptr);
  std::string expected = "<Parameter>\n  <Keyframes>\n";
  for (int n = 0; n < 2000; ++n) {
    parameter.addKeyFrame(time(n), n, time(0));
    const std::string number = std::to_string(n);
    expected +=
        "  <Keyframe  time=\"" + number + "\" value=\"" + number + "\" leadInLength=\"0\" />\n";
  }
  expected += "  </Keyframes>\n</Parameter>\n";
  EXPECT_EQ(xmlOf(parameter), expected);
}

TEST(XmlForms, KeepWhatWasWrittenBeforeAFailure) {
  class Failing final : public XMLable {
   public:
    void xmlElementName(XMLOptions& options) const override { options.outStream() << "E"; }
    void xmlBody(XMLOptions&, int) const override { throw std::domain_error("no"); }
  };
  std::ostringstream out;
  {
    XMLOptions options(out);
    EXPECT_THROW(Failing().toXML(options, 0, ""), std::domain_error);
    EXPECT_THROW(Failing().toXML(options, 0, ""), std::domain_error);
  }
  EXPECT_EQ(out.str(), "<E>\n<E");
}

}  // namespace
}  // namespace Kestova
