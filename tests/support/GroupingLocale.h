// A locale with grouped digits and decimal commas.
#pragma once

#include <locale>
#include <string>

namespace testing_support {

/// During its lifetime new streams write 1234.5 as "1.234,5".
class GroupingLocale {
 public:
  GroupingLocale()
      : m_before(std::locale::global(std::locale(std::locale::classic(), new Grouping))) {}
  ~GroupingLocale() { std::locale::global(m_before); }
  GroupingLocale(const GroupingLocale&) = delete;
  GroupingLocale& operator=(const GroupingLocale&) = delete;

 private:
  class Grouping final : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale m_before;
};

}  // namespace testing_support
