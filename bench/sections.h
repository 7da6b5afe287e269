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

}  // namespace vorrin::bench
