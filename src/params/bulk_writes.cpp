// The writes of a rule, kept until its end. Everything but values passes through.
#include "params/bulk_writes.h"

#include "params/edit.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace morvellan::params
{
namespace
{
class KeptWrites final : public ParamAccess
{
public:
  explicit KeptWrites(ParamAccess& host) : host_(host) {}

  double number(std::string_view name) const override
  {
    const Kept* const kept = find(name);
    return kept != nullptr ? kept->value[0] : host_.number(name);
  }
  Rgb rgb(std::string_view name) const override
  {
    const Kept* const kept = find(name);
    return kept != nullptr ? kept->value : host_.rgb(name);
  }
  void setNumber(std::string_view name, double value) override { keep(name, {value, 0.0, 0.0}, false); }
  void setRgb(std::string_view name, const Rgb& value) override { keep(name, value, true); }
  void beginEdit(std::string_view) override { inEdit_ = true; }
  void endEdit(std::string_view) override { inEdit_ = false; }

  void setVisible(std::string_view name, bool visible) override { host_.setVisible(name, visible); }
  void setSecret(std::string_view name, bool secret) override { host_.setSecret(name, secret); }
  std::optional<Size> imageSize(Side side) override { return host_.imageSize(side); }
  void rememberResolution(Side side, int choice, Size size) override { host_.rememberResolution(side, choice, size); }
  void perform(Action action) override { host_.perform(action); }

  void handOver()
  {
    for (const Kept& kept : kept_)
    {
      if (kept.isRgb)
        kept.inEdit ? writeDerivedRgb(host_, kept.name, kept.value) : writeRgb(host_, kept.name, kept.value);
      else
        kept.inEdit ? writeDerived(host_, kept.name, kept.value[0]) : write(host_, kept.name, kept.value[0]);
    }
  }

private:
  struct Kept
  {
    std::string name;
    Rgb value;
    bool isRgb;
    bool inEdit;
  };

  const Kept* find(std::string_view name) const
  {
    const auto found = places_.find(std::string{name});
    return found != places_.end() ? &kept_[found->second] : nullptr;
  }
  void keep(std::string_view name, const Rgb& value, bool isRgb)
  {
    const auto [place, isNew] = places_.try_emplace(std::string{name}, kept_.size());
    if (isNew)
      kept_.push_back({.name = place->first, .value = value, .isRgb = isRgb, .inEdit = inEdit_});
    else
      kept_[place->second].value = value;
  }

  ParamAccess& host_;
  std::vector<Kept> kept_;
  std::unordered_map<std::string, std::size_t> places_;
  bool inEdit_ = false;
};
}  // namespace

void inOneGo(ParamAccess& host, const std::function<void(ParamAccess&)>& rule)
{
  KeptWrites kept(host);
  rule(kept);
  kept.handOver();
}
}  // namespace morvellan::params
