// The rules of the colour entries and the light classes in one place: what
// each kind of entry (FingerColor::kind) is, which kinds a light class tries,
// and what a kind chooses for the frame it is tried on. The public fields
// stay plain ints; these names give their values meaning.
#ifndef MOLO_DETECTOR_COLOUR_RULES_H
#define MOLO_DETECTOR_COLOUR_RULES_H

namespace molo {

// Kinds of colour entry. A "full" entry grows regions from seed_map_full, a
// "band" entry from seed_map_band; "grey" entries match near-neutral chroma,
// so a bright candidate found with one is taken for a grey object.
constexpr int kKindFull = 1;      // entries 0 to 2 of the built-in table
constexpr int kKindFullGrey = 2;  // entry 4
constexpr int kKindBand = 3;      // no built-in entry
constexpr int kKindBandGrey = 4;  // entry 3

// Light classes of a frame (Molo_FingerDetect::light_class).
constexpr int kLightPlain = 1;   // neither bright nor warm
constexpr int kLightBright = 2;  // gain under 1.02
constexpr int kLightWarm = 3;    // below 3000 K, or below 3900 K at gains above 4.5

// Light condition of a frame from sensor gain and white-balance temperature:
// kLightWarm for warm light (below 3000 K, or below 3900 K at gains above
// 4.5), else kLightBright for a gain under 1.02 (bright scene), else
// kLightPlain. The kelvin limits differ on purpose (pinned by
// LightClass.KelvinAndGainLimitsAndKindRules); a NaN gain counts as a high gain.
int light_class_of(float capture_gain, int color_temp);

// Whether an entry of `kind` is tried on a frame of `light_class`: plain
// light tries neither band kind, bright light no kKindBand, warm light no
// kKindBandGrey. Any other value of either allows the entry.
bool light_allows(int light_class, int kind);

// What an entry's kind chooses for the frame it is tried on.
struct KindRules {
    bool band_seeds;          // seed_map_band, else seed_map_full
    float max_area_share;     // max_area as a share of the working area
    float compactness_limit;  // a candidate's perimeter / sqrt(area) stays below it
    bool grey_test;           // a bright candidate is rejected as a grey object
};

// The rules of `kind`; an unknown kind takes those of kKindFull. Only
// kKindBand has the tighter compactness limit: kKindBandGrey keeps 1.42 on
// purpose (pinned by LightClass.KelvinAndGainLimitsAndKindRules).
KindRules kind_rules(int kind);

}  // namespace molo

#endif  // MOLO_DETECTOR_COLOUR_RULES_H
