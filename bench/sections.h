#pragma once

namespace vorrin::bench {

/// The sections of the benchmark. Each starts what it needs, measures, and prints its table.
void measureClicks();
void measureLatency();
void measureIdle();
void measurePresetList();
void measureStartup();
void measureStore();
void measureTickCost();
void measureTyping();

/// Runs only when it is asked for: ten million clicks take three hours.
void measureSoak(long clicks);

}  // namespace vorrin::bench
