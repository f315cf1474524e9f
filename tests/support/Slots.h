// The host's stream slots.
#pragma once

#include <map>
#include <string>

#include "host/Kestova/ScreenMetaData.h"

namespace testing_support {

/// Records which slot was set to which stream name, by short key.
class Slots : public Kestova::ScreenMetaData {
 public:
  bool isEmpty() const override { return names.empty(); }
  void clear() override { names.clear(); }
  bool holds(const std::string&) const override { return false; }
#define KESTOVA_SLOT(KEY)                                     \
  void set##KEY##Filename(const std::string& name) override { \
    names[#KEY] = name;                                       \
  }
  KESTOVA_SLOT(F0)
  KESTOVA_SLOT(F1)
  KESTOVA_SLOT(F2)
  KESTOVA_SLOT(F3)
  KESTOVA_SLOT(F4)
  KESTOVA_SLOT(F5)
  KESTOVA_SLOT(F6)
  KESTOVA_SLOT(FB)
  KESTOVA_SLOT(F7)
  KESTOVA_SLOT(F8)
  KESTOVA_SLOT(F9)
  KESTOVA_SLOT(FA)
  KESTOVA_SLOT(01)
#undef KESTOVA_SLOT

  std::map<std::string, std::string> names;
};

}  // namespace testing_support
