#include "visibility/VisibleRegions.h"

#include <algorithm>

namespace zrfigure {
namespace {

// Exact squared distance of every pixel to the nearest pixel with another id, all ids at once, in two passes of integer
// work (P. Felzenszwalb, D. Huttenlocher, "Distance Transforms of Sampled Functions", 2012):
//   1. along columns: the distance g to the nearest foreign pixel above or below;
//   2. along rows: min over q of (x - q)^2 + g(q)^2 by the lower envelope of parabolas.
// What makes it multi-label: between a pixel and the nearest foreign one of its row nothing foreign stands, so the
// envelope of pass 2 only needs the pixel's own run of equal ids plus the two foreign pixels at its ends, with g = 0.
// O(width * height), however many ids. The outside of the image counts as foreign.
// Only the deepest pixel of each id is asked for, so a run whose g stays below the best depth so far is skipped.

struct Candidate {
  std::int64_t squaredDepth = 0;
  double centroidDistance = 0;
  int x = 0, y = 0;
};

struct RegionSum {
  std::int64_t count = 0, sumX = 0, sumY = 0;
  Candidate best;

  // Squared distance to the centroid, times count squared: free of division, so equal distances compare equal.
  [[nodiscard]] double CentroidDistance(int x, int y) const {
    const auto dx = static_cast<double>(count * x - sumX), dy = static_cast<double>(count * y - sumY);
    return dx * dx + dy * dy;
  }

  void Offer(std::int64_t squaredDepth, int x, int y) {
    if (squaredDepth < best.squaredDepth) return;
    const Candidate offered{squaredDepth, CentroidDistance(x, y), x, y};
    const bool better =
        squaredDepth > best.squaredDepth || offered.centroidDistance < best.centroidDistance ||
        (offered.centroidDistance == best.centroidDistance && (y < best.y || (y == best.y && x < best.x)));
    if (better) best = offered;
  }
};

// Half-open ranges of equal foreground ids in a row.
template <class Visit>
void ForEachRun(const IdBuffer& buffer, int y, const Visit& visit) {
  const std::int32_t* row = buffer.ids.data() + static_cast<std::size_t>(y) * buffer.width;
  for (int x = 0; x < buffer.width;) {
    int end = x + 1;
    while (end < buffer.width && row[end] == row[x]) ++end;
    if (row[x] != IdBuffer::kBackground) visit(row[x], x, end);
    x = end;
  }
}

std::vector<RegionSum> SumRegions(const IdBuffer& buffer) {
  std::vector<RegionSum> sums;
  for (int y = 0; y < buffer.height; ++y) {
    ForEachRun(buffer, y, [&](std::int32_t id, int begin, int end) {
      if (static_cast<std::size_t>(id) >= sums.size()) sums.resize(id + 1);
      const std::int64_t length = end - begin;
      sums[id].count += length;
      sums[id].sumX += length * (begin + end - 1) / 2;
      sums[id].sumY += length * y;
    });
  }
  return sums;
}

// Row by row instead of column by column, for the cache's sake.
std::vector<std::int32_t> ColumnDistances(const IdBuffer& buffer) {
  const std::size_t width = buffer.width;
  std::vector<std::int32_t> g(buffer.ids.size(), 1);
  for (std::size_t at = width; at < g.size(); ++at) {
    if (buffer.ids[at] == buffer.ids[at - width]) g[at] = g[at - width] + 1;
  }
  std::vector<std::int32_t> below(width, 1);
  for (std::size_t row = buffer.height; row-- > 0;) {
    const bool last = row + 1 == static_cast<std::size_t>(buffer.height);
    for (std::size_t x = 0; x < width; ++x) {
      const std::size_t at = row * width + x;
      below[x] = !last && buffer.ids[at] == buffer.ids[at + width] ? below[x] + 1 : 1;
      g[at] = std::min(g[at], below[x]);
    }
  }
  return g;
}

/// Lower envelope of the parabolas of one run and the depths read from it.
class RunEnvelope {
public:
  void Build(const std::int32_t* g, int begin, int end) {
    size_ = 0;
    Add(begin - 1, 0);
    for (int q = begin; q < end; ++q) Add(q, static_cast<std::int64_t>(g[q]) * g[q]);
    Add(end, 0);
  }

  template <class Visit>
  void Read(int begin, int end, const Visit& visit) const {
    std::size_t k = 0;
    for (int x = begin; x < end; ++x) {
      while (k + 1 < size_ && arcs_[k + 1].from <= x) ++k;
      const std::int64_t dx = x - arcs_[k].apex;
      visit(x, dx * dx + arcs_[k].height);
    }
  }

private:
  struct Arc {
    std::int64_t apex, height, from;
  };

  // First integer x at which the parabola over `q` is lower than the arc's; q is right of the arc's apex.
  static std::int64_t Overtakes(const Arc& arc, std::int64_t q, std::int64_t height) {
    const std::int64_t numerator = height + q * q - arc.height - arc.apex * arc.apex;
    const std::int64_t denominator = 2 * (q - arc.apex);
    const std::int64_t floor =
        numerator >= 0 ? numerator / denominator : -((-numerator + denominator - 1) / denominator);
    return floor + 1;
  }

  void Add(std::int64_t q, std::int64_t height) {
    if (arcs_.size() <= size_) arcs_.resize(2 * size_ + 16);
    std::int64_t from = std::numeric_limits<std::int64_t>::min();
    while (size_ > 0) {
      from = Overtakes(arcs_[size_ - 1], q, height);
      if (from > arcs_[size_ - 1].from) break;
      --size_;
    }
    arcs_[size_] = {q, height, size_ == 0 ? std::numeric_limits<std::int64_t>::min() : from};
    ++size_;
  }

  std::vector<Arc> arcs_;
  std::size_t size_ = 0;
};

bool CanImprove(const RegionSum& sum, const std::int32_t* g, int begin, int end) {
  const std::int32_t highest = *std::max_element(g + begin, g + end);
  const std::int64_t half = (end - begin + 1) / 2;
  const std::int64_t bound = std::min<std::int64_t>(highest, half);
  return bound * bound >= sum.best.squaredDepth;
}

void FindDeepest(const IdBuffer& buffer, std::vector<RegionSum>& sums) {
  const std::vector<std::int32_t> columns = ColumnDistances(buffer);
  RunEnvelope envelope;
  for (int y = 0; y < buffer.height; ++y) {
    const std::int32_t* g = columns.data() + static_cast<std::size_t>(y) * buffer.width;
    ForEachRun(buffer, y, [&](std::int32_t id, int begin, int end) {
      RegionSum& sum = sums[id];
      if (!CanImprove(sum, g, begin, end)) return;
      envelope.Build(g, begin, end);
      envelope.Read(begin, end, [&](int x, std::int64_t depth) { sum.Offer(depth, x, y); });
    });
  }
}

}  // namespace

std::vector<VisibleRegion> FindVisibleRegions(const IdBuffer& buffer, const View& view) {
  std::vector<RegionSum> sums = SumRegions(buffer);
  FindDeepest(buffer, sums);
  std::vector<VisibleRegion> regions;
  for (std::size_t id = 0; id < sums.size(); ++id) {
    const RegionSum& sum = sums[id];
    if (sum.count == 0) continue;
    const std::size_t at = static_cast<std::size_t>(sum.best.y) * buffer.width + sum.best.x;
    regions.push_back({static_cast<int>(id), sum.count, sum.best.x, sum.best.y,
                       std::sqrt(static_cast<double>(sum.best.squaredDepth)),
                       view.ToWorld({sum.best.x + 0.5, sum.best.y + 0.5, buffer.depths[at]})});
  }
  return regions;
}

const VisibleRegion* FindRegion(const std::vector<VisibleRegion>& regions, int occurrence) {
  const auto found = std::ranges::lower_bound(regions, occurrence, {}, &VisibleRegion::occurrence);
  return found != regions.end() && found->occurrence == occurrence ? &*found : nullptr;
}

}  // namespace zrfigure
