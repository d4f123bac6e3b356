// What the stand-in companion and the tests agree upon.
#pragma once

namespace kzp::standins {

inline constexpr wchar_t kCompanionFile[] = L"companion.exe";  // copied under other names

// What a companion does while it runs: the word "window" or "nothing" in the file <its name>.ini beside it;
// otherwise it shows a window.
inline constexpr wchar_t kInstructionSection[] = L"Companion";
inline constexpr wchar_t kInstructionKey[] = L"Does";
inline constexpr wchar_t kShowsWindow[] = L"window";
inline constexpr wchar_t kDoesNothing[] = L"nothing";

inline constexpr wchar_t kInstructionSuffix[] = L".ini";

// Manual-reset events. Ready is followed by the program's file name and is set once it does what it was told;
// Quit ends all companions. Every running companion holds Alive.
inline constexpr wchar_t kReadyEvent[] = L"KZP Stand-ins Companion Ready ";
inline constexpr wchar_t kQuitEvent[] = L"KZP Stand-ins Companion Quit";
inline constexpr wchar_t kAliveEvent[] = L"KZP Stand-ins Companion Alive";

inline constexpr unsigned kCompanionLifeMs = 60000;  // then it ends by itself

}  // namespace kzp::standins
