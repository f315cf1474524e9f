#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "host/Kestova/EditRateSource.h"
#include "host/Kestova/Interpolater.h"
#include "params/ParameterImpl.h"
#include "tests/params/Values.h"

namespace Kestova {
namespace {

// Linear, plus 1000 times the lead-in, so that the result shows every argument.
class Straight final : public Interpolater<double> {
 public:
  double interpolate(const double& earlier, const double& later, const RationalTime& earlierTime,
                     const RationalTime& laterTime, double time,
                     const RationalTime& leadInLength) const override {
    const double share = (time - earlierTime.toDouble()) / (laterTime - earlierTime).toDouble();
    return earlier + (later - earlier) * share + 1000 * leadInLength.toDouble();
  }
  std::string typeName() const override { return "straight"; }
};

// Defines what ParameterImpl leaves to derived classes.
class Plain final : public ParameterImpl<double> {
 public:
  using ParameterImpl<double>::ParameterImpl;
  std::string name() const override { return "plain"; }
  void accept(ParameterVisitor&) override {}
  void accept(ConstParameterVisitor&) const override {}
  boost::shared_ptr<Interpolater<double>> interpolater() const override { return m_interpolater; }
  boost::shared_ptr<Interpolater<double>> setInterpolater(
      const boost::shared_ptr<Interpolater<double>>& interpolater) override {
    return std::exchange(m_interpolater, interpolater);
  }
  boost::shared_ptr<Interpolater<double>> defaultInterpolater() const override {
    return LeftInterpolater<double>::getInstance();
  }
  Cloneable* clone() const override { return nullptr; }

  using ParameterImpl<double>::writeExtraJSON;
  void baseToJSON(const JSONOptions& options) const {
    Parameter<double>::toJSON(options, 0, "", "");
  }

 private:
  boost::shared_ptr<Interpolater<double>> m_interpolater = boost::make_shared<Straight>();
};

class TwentyFive final : public EditRateSource {
 public:
  SafeRational editRate() const override { return {25, 1}; }
};

class Impl : public testing::Test {
 protected:
  Plain parameter{{}, "", nullptr};
};

TEST_F(Impl, InterpolatesBetweenKeyframes) {
  parameter.addKeyFrame(time(10), 0.0, time(0));
  parameter.addKeyFrame(time(20), 100.0, time(2));
  EXPECT_EQ(parameter.valueAt(time(25, 2)), 25 + 2000);
  EXPECT_EQ(parameter.valueAt(time(20)), 100);

  parameter.setInterpolater(LeftInterpolater<double>::getInstance());
  EXPECT_EQ(parameter.valueAt(time(15)), 0);
  parameter.keyFrameAt(time(20))->setInterpolater(boost::make_shared<Straight>());
  EXPECT_EQ(parameter.valueAt(time(15)), 50 + 2000);  // the later keyframe's own takes precedence
}

TEST_F(Impl, ReturnsTheNextValueLessThanOneFrameBeforeIt) {
  const TwentyFive rate;
  parameter.setEditRateSource(&rate);
  parameter.addKeyFrame(time(0), 0.0, time(0));
  parameter.addKeyFrame(time(1), 100.0, time(0));
  EXPECT_EQ(parameter.valueAt(time(24, 25)), 96);  // exactly one frame before
  EXPECT_EQ(parameter.valueAt(time(241, 250)), 100);
  parameter.setEditRateSource(nullptr);
  EXPECT_DOUBLE_EQ(parameter.valueAt(time(241, 250)), 96.4);
}

TEST_F(Impl, SetsTheKeyframeAtExactlyTheTime) {
  EXPECT_EQ(parameter.setValue(1.0, time(10)), 0);
  EXPECT_EQ(parameter.setValue(2.0, time(10)), 1);
  try {
    parameter.setValue(3.0, time(11));
    ADD_FAILURE() << "was not refused";
  } catch (const KestovaException& error) {
    EXPECT_STREQ(error.what(), "error");
  }
  EXPECT_THROW(parameter.setValue(3.0), KestovaException);  // at 0
}

TEST_F(Impl, NamesAnInterpolaterThatIsNotTheDefaultInJson) {
  parameter.addKeyFrame(time(10), 0.5, time(0));
  std::ostringstream out;
  parameter.toJSON(JSONOptions(out), 0, "", "");
  EXPECT_EQ(out.str(),
            "\"plain\" : {\n"
            "  \"type\" : \"double\",\n"
            "  \"interp\" : \"straight\",\n"
            "  \"keyframes\" : [\n"
            "    {\n"
            "      \"time\" : 10,\n"
            "      \"value\" : 0.5,\n"
            "      \"duration\" : 0\n"
            "    }\n"
            "  ]\n"
            "}");
}

TEST_F(Impl, IsNotWrittenByTheBaseClass) {
  std::ostringstream out;
  try {
    parameter.baseToJSON(JSONOptions(out));
    ADD_FAILURE() << "was written";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "Serializing unserializable parameter plain");
  }
  EXPECT_FALSE(parameter.writeExtraJSON(JSONOptions(out), 0));
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace Kestova
