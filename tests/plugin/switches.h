// The switches of a frame with their settings, and runs that cover every pair of settings in every geometry.
#pragma once

#include <array>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test::switches
{

using Project = ProjectRenderer::Project;

// One switch: its settings, each a few stored values.
using Factor = std::vector<Project>;

using Choice = std::vector<size_t>;  // one setting of each factor
using Pair = std::array<size_t, 4>;  // a factor, its setting, another factor, its setting

inline std::set<Pair> pairsOf(const Choice& choice)
{
  std::set<Pair> pairs;
  for (size_t i = 0; i < choice.size(); ++i)
    for (size_t j = i + 1; j < choice.size(); ++j)
      pairs.insert({i, choice[i], j, choice[j]});
  return pairs;
}

inline std::set<Pair> everyPair(const std::vector<Factor>& all)
{
  std::set<Pair> pairs;
  for (size_t i = 0; i < all.size(); ++i)
    for (size_t j = i + 1; j < all.size(); ++j)
      for (size_t a = 0; a < all[i].size(); ++a)
        for (size_t b = 0; b < all[j].size(); ++b)
          pairs.insert({i, a, j, b});
  return pairs;
}

// Settings that cover every pair of settings of two factors: each next one is the best of a few random candidates.
inline std::vector<Choice> pairwise(const std::vector<Factor>& all, size_t seed)
{
  std::set<Pair> open = everyPair(all);
  std::mt19937 random(static_cast<unsigned>(seed));
  std::vector<Choice> chosen;
  while (!open.empty())
  {
    Choice best;
    std::vector<Pair> bestCovers;
    for (int candidate = 0; candidate < 30; ++candidate)
    {
      Choice choice(all.size());
      for (size_t i = 0; i < all.size(); ++i)
        choice[i] = random() % all[i].size();
      // A pair that is still open is always part of the candidate.
      const Pair& wanted = *open.begin();
      choice[wanted[0]] = wanted[1];
      choice[wanted[2]] = wanted[3];
      std::vector<Pair> covers;
      for (const Pair& pair : pairsOf(choice))
        if (open.count(pair))
          covers.push_back(pair);
      if (covers.size() > bestCovers.size())
      {
        best = choice;
        bestCovers = covers;
      }
    }
    for (const Pair& pair : bestCovers)
      open.erase(pair);
    chosen.push_back(best);
  }
  return chosen;
}

// Settings of one geometry and of every factor.
struct Settings
{
  size_t geometry;
  Choice choice;
  Project project;
};

// Within every geometry each pair of the other switches; `always` underneath.
inline std::vector<Settings> everySettings(const Factor& geometries, const std::vector<Factor>& within,
                                           const Project& always)
{
  std::vector<Settings> all;
  for (size_t geometry = 0; geometry < geometries.size(); ++geometry)
    for (const Choice& choice : pairwise(within, geometry))
    {
      Project project = always;
      for (const auto& [name, value] : geometries[geometry])
        project[name] = value;
      for (size_t i = 0; i < choice.size(); ++i)
        for (const auto& [name, value] : within[i][choice[i]])
          project[name] = value;
      all.push_back({geometry, choice, project});
    }
  return all;
}

inline std::string described(const Project& project)
{
  std::string text;
  for (const auto& [name, value] : project)
    text += name + "=" + host::toText(value) + " ";
  return text;
}

}  // namespace morvellan::test::switches
