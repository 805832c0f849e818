/* An empty library, as the baseline for others. */
typedef int nothing;
