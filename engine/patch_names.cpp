#include "engine/midiapi.h"

namespace tonvex {

const std::array<const char*, 129> PatchNames = {
    // pianos
    "Acoustic Grand Piano", "Bright Acoustic Piano", "Electric Grand Piano", "Honky -tonk Piano",
    "Rhodes Piano", "Chorus Piano", "Harpsi -chord", "Clavinet",
    // chromatic percussion
    "Celesta", "Glocken -spiel", "Music Box", "Vibra -phone", "Marimba", "Xylo -phone", "Tubular Bells",
    "Dulcimer",
    // organs
    "Hammond Organ", "Percuss. Organ", "Rock Organ", "Church Organ", "Reed Organ", "Accordion", "Harmonica",
    "Tango Accordion",
    // guitars
    "Acoustic Guitar (nylon)", "Acoustic Guitar (steel)", "Electric Guitar (jazz)", "Electric Guitar (clean)",
    "Electric Guitar (muted)", "Overdriven Guitar", "Distortion Guitar", "Guitar Harmonics",
    // basses
    "Acoustic Bass", "Electric Bass (finger)", "Electric Bass (pick)", "Fretless Bass", "Slap Bass 1",
    "Slap Bass 2", "Synth Bass 1", "Synth Bass 2",
    // strings
    "Violin", "Viola", "Cello", "Contra Bass", "Tremolo Strings", "Pizzicato Strings", "Orchestral Harp",
    "Timpani",
    // ensembles
    "String Ensemble 1", "String Ensemble 2", "Synth Strings 1", "Synth Strings 2", "Choir Aahs",
    "Voice Oohs", "Synth Voice", "Orchestra Hit",
    // brass
    "Trumpet", "Trombone ", "Tuba", "Muted Trumpet", "French Horn ", "Brass Section", "Synth Brass 1",
    "Synth Brass 2",
    // reeds
    "Soprano Sax", "Alto Sax", "Tenor Sax", "Baritone Sax", "Oboe", "English Horn", "Bassoon", "Clarinet",
    // pipes
    "Piccolo", "Flute", "Recorder", "Pan Flute", "Bottle Blow", "Shaku", "Whistle", "Ocarina",
    // leads
    "Lead 1 (square)", "Lead 2 (saw tooth)", "Lead 3 (calliope lead)", "Lead 4 (chiff lead)",
    "Lead 5 (charang)", "Lead 6 (voice)", "Lead 7 (fifths)", "Lead 8 (bass + lead)",
    // pads
    "Pad 1 (new age)", "Pad 2 (warm)", "Pad 3 (poly synth)", "Pad 4 (choir)", "Pad 5 (bowed)",
    "Pad 6 (metallic)", "Pad 7 (halo)", "Pad 8 (sweep)",
    // effects
    "FX 1 (rain)", "FX 2 (sound track)", "FX 3 (crystal)", "FX 4 (atmo - sphere)", "FX 5 (bright)",
    "FX 6 (goblins)", "FX 7 (echoes)", "FX 8 (sci-fi)",
    // folk instruments
    "Sitar", "Banjo", "Shamisen", "Koto", "Kalimba", "Bagpipe", "Fiddle", "Shanai",
    // percussion
    "Tinkle Bell", "Agogo", "Steel Drums", "Wood block", "Taiko Drum", "Melodic Tom ", "Synth Drum ",
    "Reverse Cymbal",
    // noises
    "Guitar Fret Noise ", "Breath Noise", "Seashore", "Bird Tweet", "Telephone Ring", "Helicopter",
    "Applause", "Gunshot",
    // drum kit
    "Standard"};

} // namespace tonvex
