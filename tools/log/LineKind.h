#pragma once

#include <cstdint>

namespace brisk::logbook {

// What a line of the service's log tells. Kinds that mean the same to a reader share one.
enum class LineKind : std::uint8_t {
    // No line of the service.
    Foreign, // neither the service's nor a recording's
    Head,    // "# NAME: VALUE" at the front of a recording
    Unknown, // begins as the service's lines do, and says nothing that is known

    // Command line; only in the debugger output.
    FirstParameter, // looked for: a start begins
    Parameter,      // looked for
    ParameterSet,   // NAME to VALUE

    // Start and end.
    Started,
    RunningAlready,
    ModuleFailed,
    DatabaseNotOpened,
    DatabaseNoArray,
    UnknownAdapter,
    TitlesProcessed,
    RegistryGranted,
    RegistryNotGranted,
    GraphicsNote,
    LibraryFailed,   // the vendor's library, or its measuring
    LibraryAcquired, // it measures
    GenericGraphics,
    NoGraphics,
    Finished,
    Error, // an exception's text: the process ends

    // A game that is announced and looked for.
    AppStarted,
    SecondGame,
    UnknownId,
    Waiting,
    SwitchTo,
    Tick, // of a game that is not found yet
    Window,
    WindowProcess,
    OtherProcess,
    NoFileName,
    NoFileProperties,
    Publisher,
    CheckingPath,
    CheckingRegistry,
    ConfigFound,
    ConfigNotFound,
    RegistryOpenFailed,
    ConfigSkipped,
    OpenProcessFailed,

    // A game that is followed.
    ExitCodeFailed,
    ProcessClosed,
    NotInForeground,
    Sample,
    SampleFailed,

    // A game's end.
    AppFinished,
    FinishedInIdle,
    Average,
    CurrentDisplay,
    LibraryDisplay,
    LibraryDisplayFailed,
    NativeResolution,
    AspectRatio,
    DisplayModes,
    LowerResolution,
    NoLowerResolution,
    NotNative,
    NoOptimalResolution,
    TooFewSamples,
    Ratio,
    ShouldShowToast,
    NotOptimal,
    NotLoaded,
    ConditionForbids,
    ConditionMissing,
    Needed,
    OffersAllowed,
    Refusals,
    ToastRefused,

    // Buttons and what they do.
    PressConfigure,
    PressNotNow,
    PressDontAskAgain,
    PressReadMore,
    SettingNotWritten,
    Optimized,
    PatchFailed,
    MarkerSet,
    MarkerFailed,
    RefusalCounted,
    RefusalNotCounted,
    OffersDisabled,
    OffersNotDisabled,

    // The rest.
    BulkPass,
    BulkPassBegins,
    NothingToOptimize,
    Reset,
    ResetNote,
    RegistryFailed, // a call for the user's answers
    TitleInformation,
};

} // namespace brisk::logbook
