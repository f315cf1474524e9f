// The JSON form of parameters. docs/serialisation.md specifies it.
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "host/Kestova/Json.h"
#include "params/ParameterImpl.h"
#include "params/ValueTraits.h"
#include "text/TextBlock.h"

namespace Kestova {

namespace {

using JsonBlock = text::TextBlock<std::size_t{32} << 10U>;

template <class T>
bool isWrittenAsValueAlone(const Parameter<T>& parameter, const KeyFrameMap<T>& keyFrames) {
  if (parameter.interpolater() != parameter.defaultInterpolater() || parameter.valueBounds()) {
    return false;
  }
  if (keyFrames.empty()) return true;
  static constexpr std::string_view kNeverAlone[] = {"toc", "quiz", "captions", "captionData"};
  return keyFrames.size() == 1 && keyFrames.begin().value()->leadInLength() == RationalTime(0) &&
         std::count(std::begin(kNeverAlone), std::end(kNeverAlone), parameter.name()) == 0;
}

template <class T>
void writeBounds(JsonBlock& out, const Parameter<T>& parameter, int indent) {
  const auto bounds = parameter.valueBounds();
  if (!bounds) return;
  const std::string outside = json_indent(indent);
  const std::string inside = json_indent(indent + 1);
  out.write(",\n", outside, json_keyname("valueBounds"), "{\n");
  out.write(inside, json_keyname("minValue"), ValueTraits<T>::jsonText(bounds->minValue), ",\n");
  out.write(inside, json_keyname("maxValue"), ValueTraits<T>::jsonText(bounds->maxValue), ",\n");
  out.write(inside, json_keyname("defaultValue"), ValueTraits<T>::jsonText(bounds->defaultValue));
  out.write('\n', outside, '}');
}

template <class T>
void writeHints(JsonBlock& out, const Parameter<T>& parameter, int indent) {
  const auto hints = parameter.uiHints();
  if (!hints) return;
  const std::string outside = json_indent(indent);
  const std::string inside = json_indent(indent + 1);
  out.write(",\n", outside, json_keyname("uiHints"), "{\n");
  out.write(inside, json_keyname("userInterfaceType"), hints->userInterfaceType, ",\n");
  out.write(inside, json_keyname("unitType"), hints->unitType);
  out.write('\n', outside, '}');
}

// The time of a keyframe in JSON is the start of its lead-in.
template <class T>
void writeKeyFrames(JsonBlock& out, const JSONOptions& options, const KeyFrameMap<T>& keyFrames,
                    int indent) {
  out.write(",\n", json_indent(indent), json_keyname("keyframes"), "[\n");
  const std::string outside = json_indent(indent + 1);
  const std::string inside = json_indent(indent + 2);
  const std::string timeKey = outside + "{\n" + inside + json_keyname("time");
  const std::string valueKey = ",\n" + inside + json_keyname("value");
  const std::string durationKey = ",\n" + inside + json_keyname("duration");
  const std::string end = '\n' + outside + '}';
  std::string_view separator;
  for (const auto& entry : keyFrames) {
    const auto& keyFrame = entry.second;
    const RationalTime& leadIn = keyFrame->leadInLength();
    const RationalTime start = keyFrame->time() - leadIn;
    const auto write = [&](const auto& startText, const auto& leadInText) {
      out.write(separator, timeKey, startText, valueKey,
                ValueTraits<T>::jsonText(keyFrame->value()), durationKey, leadInText);
    };
    if (start.denominator() == 1 && leadIn.denominator() == 1) {
      write(start.numerator(), leadIn.numerator());  // without a call to the host for whole times
    } else {
      write(json_representation(start), json_representation(leadIn));
    }
    if (keyFrame->metaDataMap() != nullptr) {
      out.flush();
      MetaDatable::toJSON(*keyFrame, options, indent + 2, "");
    }
    out.write(end);
    separator = ",\n";
  }
  out.write('\n', json_indent(indent), ']');
}

}  // namespace

template <class T>
void ParameterImpl<T>::toJSON(const JSONOptions& options, int indent,
                              const std::string& leadingText, const std::string& namePrefix) const {
  std::string key = this->name();
  if (key.compare(0, namePrefix.size(), namePrefix) == 0) key.erase(0, namePrefix.size());
  JsonBlock out(options.outStream());
  out.write(leadingText, json_indent(indent), '"', key, "\" : ");
  if (isWrittenAsValueAlone(*this, m_keyFrames)) {
    out.write(ValueTraits<T>::jsonText(this->valueAt(RationalTime(0))));
    return;
  }
  out.write("{\n", json_indent(indent + 1), json_keyname("type"),
            json_representation(std::string(ValueTraits<T>::kTypeName)));
  out.flush();
  this->writeExtraJSON(options, indent + 1);
  if (const auto own = this->interpolater(); own && own != this->defaultInterpolater()) {
    out.write(",\n", json_indent(indent + 1), json_keyname("interp"),
              json_representation(own->typeName()));
  }
  writeBounds(out, *this, indent + 1);
  writeHints(out, *this, indent + 1);
  if (this->numKeyFrames() >= 1) writeKeyFrames<T>(out, options, m_keyFrames, indent + 1);
  out.write('\n', json_indent(indent), '}');
}

template <class T>
bool ParameterImpl<T>::writeExtraJSON(const JSONOptions& /*options*/, int /*indent*/) const {
  return false;
}

#define KESTOVA_PARAMETER_JSON(T)                                                     \
  template void ParameterImpl<T>::toJSON(const JSONOptions&, int, const std::string&, \
                                         const std::string&) const;                   \
  template bool ParameterImpl<T>::writeExtraJSON(const JSONOptions&, int) const;
KESTOVA_FOR_EACH_PARAMETER_TYPE(KESTOVA_PARAMETER_JSON)

}  // namespace Kestova
