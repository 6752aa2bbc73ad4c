// Parameters: defaults, ranges, values in time.
#include "host/param.h"

#include <cmath>
#include <stdexcept>

#include <fmt/format.h>

#include "host/observer.h"
#include "host/property_tables.h"

namespace morvellan::host
{
namespace
{

double numberOf(const PropertyValues& values, std::size_t index)
{
  if (const auto* ints = std::get_if<std::vector<int>>(&values))
  {
    return ints->at(index);
  }
  return std::get<std::vector<double>>(values).at(index);
}

}  // namespace

Param::Param(ParamSet& set, ParamKind kind, const std::string& name)
    : set_(set), kind_(kind), name_(name), properties_(fmt::format("parameter {}", name))
{
  defineParamProperties(properties_, kind, name);
}

Param::Param(ParamSet& set, const Param& described)
    : set_(set), kind_(described.kind_), name_(described.name_), properties_(fmt::format("parameter {}", name_)),
      value_(described.defaultValue())
{
  defineParamInstanceProperties(properties_, described.properties_);
}

bool Param::isSecret() const
{
  return properties_.getInt(kOfxParamPropSecret) != 0;
}
bool Param::isEnabled() const
{
  return properties_.getInt(kOfxParamPropEnabled) != 0;
}

bool Param::isPersistent() const
{
  return hasValue() && properties_.getInt(kOfxParamPropPersistent) != 0;
}

std::string Param::label() const
{
  return properties_.getString(kOfxPropLabel);
}

std::vector<std::string> Param::options() const
{
  return kind_ == ParamKind::Choice ? properties_.getStrings(kOfxParamPropChoiceOption) : std::vector<std::string>{};
}

ParamValue Param::defaultValue() const
{
  ParamValue value;
  if (!hasValue())
  {
    return value;
  }
  properties_.visit(
      [&](const std::string& property, const Property& content)
      {
        if (property != kOfxParamPropDefault)
        {
          return;
        }
        if (const auto* text = std::get_if<std::deque<std::string>>(&content.values))
        {
          value.text = text->at(0);
          return;
        }
        value.count = facts().dimension;
        for (std::size_t i = 0; i < static_cast<std::size_t>(value.count); ++i)
        {
          value.numbers[i] = numberOf(content.values, i);
        }
      });
  return value;
}

std::string Param::complaintAbout(const ParamValue& value) const
{
  const ValueFamily family = facts().family;
  if (family == ValueFamily::None)
  {
    return fmt::format("{} ({}) has no value", name_, facts().label);
  }
  const int wanted = family == ValueFamily::String ? 0 : facts().dimension;
  if (value.count != wanted)
  {
    return fmt::format("{} ({}) takes {}", name_, facts().label,
                       wanted == 0 ? "a text" : fmt::format("{} number{}", wanted, wanted == 1 ? "" : "s"));
  }
  for (int i = 0; i < value.count; ++i)
  {
    const double number = value.numbers[static_cast<std::size_t>(i)];
    if (!std::isfinite(number))
    {
      return fmt::format("{} must be a finite number", name_);
    }
    if (family == ValueFamily::Int && number != std::trunc(number))
    {
      return fmt::format("{} must be a whole number", name_);
    }
  }
  if (kind_ == ParamKind::Boolean && value.numbers[0] != 0.0 && value.numbers[0] != 1.0)
  {
    return fmt::format("{} must be 0 or 1", name_);
  }
  if (kind_ == ParamKind::Choice)
  {
    const auto last = static_cast<int>(options().size()) - 1;
    return value.numbers[0] < 0 || value.numbers[0] > last ? fmt::format("{} has the options 0 to {}", name_, last)
                                                           : "";
  }
  std::string complaint;
  properties_.visit(
      [&](const std::string& property, const Property& content)
      {
        const bool isMin = property == kOfxParamPropMin;
        if (!isMin && property != kOfxParamPropMax)
        {
          return;
        }
        for (std::size_t i = 0; i < static_cast<std::size_t>(value.count); ++i)
        {
          const double limit = numberOf(content.values, i);
          if (isMin ? value.numbers[i] < limit : value.numbers[i] > limit)
          {
            complaint =
                fmt::format("{} must be {} {}, not {}", name_, isMin ? "at least" : "at most", limit, value.numbers[i]);
          }
        }
      });
  return complaint;
}

ParamValue Param::value() const
{
  const std::scoped_lock lock(mutex_);
  return value_;
}

ParamValue Param::valueAt(double time) const
{
  const std::scoped_lock lock(mutex_);
  if (keys_.empty())
  {
    return value_;
  }
  const auto after = keys_.upper_bound(time);
  if (after == keys_.begin())
  {
    return after->second;
  }
  const auto before = std::prev(after);
  if (after == keys_.end() || facts().family != ValueFamily::Double)
  {
    return before->second;
  }
  const double amount = (time - before->first) / (after->first - before->first);
  ParamValue mixed = before->second;
  for (std::size_t i = 0; i < static_cast<std::size_t>(mixed.count); ++i)
  {
    mixed.numbers[i] += (after->second.numbers[i] - mixed.numbers[i]) * amount;
  }
  return mixed;
}

void Param::setValue(const ParamValue& value)
{
  const std::scoped_lock lock(mutex_);
  value_ = value;
}

void Param::setKey(double time, const ParamValue& value)
{
  const std::scoped_lock lock(mutex_);
  keys_.insert_or_assign(time, value);
  if (properties_.has(kOfxParamPropIsAnimating))
  {
    properties_.put(kOfxParamPropIsAnimating, 1);
  }
}

std::map<double, ParamValue> Param::keys() const
{
  const std::scoped_lock lock(mutex_);
  return keys_;
}

bool Param::removeKey(double time)
{
  const std::scoped_lock lock(mutex_);
  return keys_.erase(time) > 0;
}

void Param::removeKeys()
{
  const std::scoped_lock lock(mutex_);
  keys_.clear();
}

const char* Param::heldText(const ParamValue& value)
{
  const std::scoped_lock lock(mutex_);
  held_ = value.text;
  return held_.c_str();
}

ParamSet::ParamSet(const std::string& owner, bool instance)
    : instance_(instance), properties_(fmt::format("parameter set of {}", owner))
{
  defineParamSetProperties(properties_);
}

Param* ParamSet::find(std::string_view name) const
{
  const auto found = byName_.find(name);
  return found == byName_.end() ? nullptr : found->second;
}

Param& ParamSet::at(std::string_view name) const
{
  Param* const param = find(name);
  if (param == nullptr)
  {
    throw std::out_of_range(fmt::format("there is no parameter {}", name));
  }
  return *param;
}

Param& ParamSet::insert(std::unique_ptr<Param> param)
{
  Param& added = *params_.emplace_back(std::move(param));
  byName_.emplace(added.name(), &added);
  return added;
}

Param& ParamSet::add(ParamKind kind, const std::string& name)
{
  return insert(std::make_unique<Param>(*this, kind, name));
}

void ParamSet::addInstanceOf(const Param& described)
{
  insert(std::make_unique<Param>(*this, described));
}

std::vector<std::string> ParamSet::editBlocks() const
{
  const std::scoped_lock lock(mutex_);
  return editBlocks_;
}

void ParamSet::beginEdit(const std::string& name)
{
  const std::scoped_lock lock(mutex_);
  editBlocks_.push_back(name);
}

bool ParamSet::endEdit()
{
  const std::scoped_lock lock(mutex_);
  if (editBlocks_.empty())
  {
    return false;
  }
  editBlocks_.pop_back();
  return true;
}

}  // namespace morvellan::host
