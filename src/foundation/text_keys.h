#pragma once

#include <string_view>

/// Every text that a person sees, as its language-table key: number, "::", default English text. The whole
/// key is looked up, so two keys may share a number, and every blank and odd spelling is part of the key.
/// Placeholders are "%%1", "%%2".
namespace vorex::text {

// clang-format off

// General vocabulary of the host.
inline constexpr std::string_view kAbort                 = "161::Abort";
inline constexpr std::string_view kPrevious              = "162::Previous";
inline constexpr std::string_view kNext                  = "163::Next";
inline constexpr std::string_view kStop                  = "164::Stop";
inline constexpr std::string_view kStart                 = "165::Start";
inline constexpr std::string_view kSkip                  = "166::Skip";
inline constexpr std::string_view kConfirmAbort          = "167::Do you want to abort the sequence?";
inline constexpr std::string_view kEnableSkipButton      = "171::Enable Skip button";
inline constexpr std::string_view kEnableNaButton        = "172::Enable NA button";

// Truth values and verdicts.
inline constexpr std::string_view kTrue                  = "22235::True";
inline constexpr std::string_view kFalse                 = "22236::False";
inline constexpr std::string_view kPass                  = "22237::Pass";
inline constexpr std::string_view kFail                  = "22238::Fail";
inline constexpr std::string_view kNotApplicable         = "22239::NA";
inline constexpr std::string_view kOverRange             = "22420::OL";
inline constexpr std::string_view kUnderRange            = "22421::UL";

// Choices of the configuration.
inline constexpr std::string_view kModeRadio             = "22465::RADIO";
inline constexpr std::string_view kModeMammo             = "22466::MAMMO";
inline constexpr std::string_view kModeFluoro            = "22464::FLUORO";
inline constexpr std::string_view kModeDental            = "22467::DENTAL";
inline constexpr std::string_view kSettingsAuto          = "22469::AUTO";
inline constexpr std::string_view kSettingsManual        = "22470::MANUAL";
inline constexpr std::string_view kSettingsDefault       = "22471::DEFAULT";
inline constexpr std::string_view kExposureUnitR         = "22020::R";
inline constexpr std::string_view kExposureUnitGy        = "22021::Gy";
inline constexpr std::string_view kPerSec                = "22022::Sec";
inline constexpr std::string_view kPerMin                = "22023::Min";
inline constexpr std::string_view kPerHour               = "22024::Hour";
inline constexpr std::string_view kPerPulse              = "22025::Pulse";
inline constexpr std::string_view kFluoroCont            = "22028::Cont";
inline constexpr std::string_view kFluoroPulsed          = "22029::Pulsed";
inline constexpr std::string_view kTimeMilliseconds      = "22142::mSec";
inline constexpr std::string_view kTimePulses            = "22027::Pulses";
inline constexpr std::string_view kInches                = "22101::Inches";
inline constexpr std::string_view kCentimeters           = "22102::Centimeters";
inline constexpr std::string_view kFocalSpotLarge        = "23001::Large";
inline constexpr std::string_view kFocalSpotSmall        = "23002::Small";
inline constexpr std::string_view kTime                  = "22136::Time";
inline constexpr std::string_view kMolybdenum            = "22357::Mo";
inline constexpr std::string_view kRhodium               = "22395::Rh";
inline constexpr std::string_view kPhantom5cm            = "23123::5 cm";
inline constexpr std::string_view kModeNormal            = "23122::Normal";
inline constexpr std::string_view kShunt                 = "25612::Shunt";
inline constexpr std::string_view kClamp                 = "25613::Clamp";
inline constexpr std::string_view kManual                = "25614::Manual";
inline constexpr std::string_view kDoseMode              = "25111::Dose";
inline constexpr std::string_view kRateMode              = "25112::Rate";
inline constexpr std::string_view kLowRateMode           = "25113::Low Rate";

// Column and quantity captions.
inline constexpr std::string_view kImportWaveform        = "22501::Import Waveform";
inline constexpr std::string_view kAdjacent              = "23126::Adjacent";
inline constexpr std::string_view kKvpAvg                = "22104::kVp Avg";
inline constexpr std::string_view kKvpMax                = "22145::kVp Max";
inline constexpr std::string_view kKvPpv                 = "22146::kV PPV";
inline constexpr std::string_view kExposure              = "22147::Exposure";
inline constexpr std::string_view kExposureRate          = "22148::Exposure Rate";
inline constexpr std::string_view kExposureTime          = "22115::Exposure Time";
inline constexpr std::string_view kExposureInPulses      = "22149::Exposure In Pulses";
inline constexpr std::string_view kPulseRate             = "22510::Pulse Rate";
inline constexpr std::string_view kPulseWidth            = "22511::Pulse Width";
inline constexpr std::string_view kHvl                   = "22150::HVL";
inline constexpr std::string_view kAvgKvpAvg             = "22839::Avg. kVp Avg";
inline constexpr std::string_view kAvgKvpMax             = "22840::Avg. kVp Max";
inline constexpr std::string_view kAvgKvPpv              = "22841::Avg. kV PPV";
inline constexpr std::string_view kAvgExposure           = "22842::Avg. Exposure";
inline constexpr std::string_view kAvgExposureRate       = "22843::Avg. Exposure Rate";
inline constexpr std::string_view kAvgExposureTime       = "22844::Avg. Exposure Time";
inline constexpr std::string_view kAvgExposureInPulses   = "22845::Avg. Exposure In Pulses";
inline constexpr std::string_view kAvgHvl                = "22846::Avg. HVL";
inline constexpr std::string_view kCvKvpAvg              = "22513::CV kVp Avg";
inline constexpr std::string_view kCvKvpMax              = "22514::CV kVp Max";
inline constexpr std::string_view kCvKvPpv               = "22515::CV kV PPV";
inline constexpr std::string_view kCvExposure            = "22516::CV Exposure";
inline constexpr std::string_view kCvExposureRate        = "22517::CV Exposure Rate";
inline constexpr std::string_view kCvExposureTime        = "22518::CV Exposure Time";
inline constexpr std::string_view kCvExposureInPulses    = "22519::CV Exposure In Pulses";
inline constexpr std::string_view kCvHvl                 = "22520::CV HVL";
inline constexpr std::string_view kMasPerPulse           = "25608::mAs/Pulse";
inline constexpr std::string_view kDosePerMas            = "25609::Dose/mAs";
inline constexpr std::string_view kAvgMa                 = "25616::Avg mA";
inline constexpr std::string_view kAvgMas                = "25617::Avg mAs";
inline constexpr std::string_view kAvgMasPerPulse        = "25618::Avg mAs/Pulse";
inline constexpr std::string_view kAvgDosePerMas         = "25619::Avg Dose/mAs";
inline constexpr std::string_view kCvMa                  = "25620::CV mA";
inline constexpr std::string_view kCvMas                 = "25621::CV mAs";
inline constexpr std::string_view kCvMasPerPulse         = "25622::CV mAs/Pulse";
inline constexpr std::string_view kCvDosePerMas          = "25623::CV Dose/mAs";
inline constexpr std::string_view kDose                  = "25129::Dose";
inline constexpr std::string_view kDoseRate              = "25130::Dose Rate";
inline constexpr std::string_view kExposures             = "25131::Exposures";
inline constexpr std::string_view kCvDoseOfExposures     = "25132::CV Dose";
inline constexpr std::string_view kCvDoseRate            = "25133::CV Dose Rate";
inline constexpr std::string_view kAvgDose               = "25134::AVG Dose";
inline constexpr std::string_view kAvgDoseRate           = "25135::AVG Dose Rate";
inline constexpr std::string_view kSdDose                = "25138::SD Dose";
inline constexpr std::string_view kCvDose                = "25139::CV Dose";
inline constexpr std::string_view kTemperature           = "25124::Temperature";
inline constexpr std::string_view kPressure              = "25125::Pressure";
inline constexpr std::string_view kAdcf                  = "25126::ADCF";
inline constexpr std::string_view kBiasVoltage           = "25127::Bias Voltage";
inline constexpr std::string_view kLeakCurrent           = "25128::Leak Current";
inline constexpr std::string_view kPercentKvpAvgError    = "22388::%kVp Avg. Error";
inline constexpr std::string_view kAbsoluteKvpAvgError   = "22529::Absolute kVp Avg. Error";
inline constexpr std::string_view kPercentTimerError     = "22532::%Timer Error";
inline constexpr std::string_view kPercentKvError        = "22555::%kV Error";
inline constexpr std::string_view kExposurePerMas        = "22543::Exposure/mAs";
inline constexpr std::string_view kCoefficientOfLinearity = "22544::CL";
inline constexpr std::string_view kAdjacentLinearity     = "22383::Adjacent Coefficient of Linearity";
inline constexpr std::string_view kNonAdjacentLinearity  = "22541::Non Adjacent Coefficient of Linearity";
inline constexpr std::string_view kPhantomThickness      = "22565::Phantom Thickness";
inline constexpr std::string_view kFluoroMode            = "22386::Mode";
inline constexpr std::string_view kMaxExposureRate       = "22387::Max. Exposure Rate";
inline constexpr std::string_view kExposureNumber        = "23003::Exposure #";
inline constexpr std::string_view kAverageRow            = "22521::AVG.";
inline constexpr std::string_view kDescription           = "22601::Description";
inline constexpr std::string_view kHalfMeanKvp           = "22577::Mean kVp(4)";
inline constexpr std::string_view kHalfStandardDeviation = "22578::SD(4)";
inline constexpr std::string_view kMeanKvp               = "22579::Mean kVp";
inline constexpr std::string_view kStandardDeviation     = "22580::Standard deviation";
inline constexpr std::string_view kMeanMinusNominal      = "22581::Mean kVp - Nominal kVp";
inline constexpr std::string_view kFivePercentNominal    = "22582::0.05 X Nominal kVp";
inline constexpr std::string_view kPercentError          = "23134::%Error";
inline constexpr std::string_view kCv                    = "23133::CV";
inline constexpr std::string_view kCvForKvpAvg           = "22389::Coefficient of Variation for kVp Avg.";
inline constexpr std::string_view kEnergyCorrectedMean   = "22592::Energy Corrected Mean Values";
inline constexpr std::string_view kSdExposure            = "22593::SD Exposure";
inline constexpr std::string_view kCvForExposure         = "22594::Coefficient of Variation for Exposure";
inline constexpr std::string_view kCvForMas              = "23130::Coefficient of Variation for mAS";
inline constexpr std::string_view kCvMasOfSettings       = "23132::CV mAs";
inline constexpr std::string_view kSkinExposure          = "22595::Inverse Square Corrected Skin Exposure";
inline constexpr std::string_view kGlandularDose         = "22596::Computed Average Glandular Dose";
inline constexpr std::string_view kDoseConversionFactor  = "22597::Dose Conversion Factor";
inline constexpr std::string_view kAirKermaRate          = "22600::Air Kerma Rate";

// Units.
inline constexpr std::string_view kUnitKv                = "22200::KV";
inline constexpr std::string_view kUnitVolt              = "25070::V";
inline constexpr std::string_view kMa                    = "22110::mA";
inline constexpr std::string_view kUnitPicoampere        = "25071::pA";
inline constexpr std::string_view kMas                   = "22103::mAs";
inline constexpr std::string_view kUnitMs                = "22012::ms";
inline constexpr std::string_view kUnitSec               = "22209::sec";
inline constexpr std::string_view kUnitPulsesPerSecond   = "23149::Pps";
inline constexpr std::string_view kUnitCm                = "22217::cm";
inline constexpr std::string_view kUnitMmAl              = "22207::mm Al";
inline constexpr std::string_view kUnitMilliroentgen     = "23012::mR";
inline constexpr std::string_view kUnitMicrogray         = "23013::uGy";
inline constexpr std::string_view kUnitMilligray         = "23024::mGy";
inline constexpr std::string_view kUnitMillirad          = "23025::mrad";
inline constexpr std::string_view kDoseUnitR             = "25114::R";
inline constexpr std::string_view kDoseUnitGy            = "25115::Gy";
inline constexpr std::string_view kDoseUnitCoulomb       = "25121::C";
inline constexpr std::string_view kUnitAmpere            = "25120::A";
inline constexpr std::string_view kOutputRateUnit        = "22243::mR/sec";
inline constexpr std::string_view kAirKermaRateUnit      = "22244::mGy/sec";
inline constexpr std::string_view kUnitMilliroentgenPerSec = "23169::mR/sec";
inline constexpr std::string_view kUnitMicrograyPerSec   = "23170::uGy/sec";
inline constexpr std::string_view kUnitRPerSec           = "23171::R/sec";
inline constexpr std::string_view kUnitRPerMin           = "23172::R/min";
inline constexpr std::string_view kUnitRPerHour          = "23173::R/hr";
inline constexpr std::string_view kUnitRPerPulse         = "23174::R/pulse";
inline constexpr std::string_view kUnitMilligrayPerSec   = "23175::mGy/sec";
inline constexpr std::string_view kUnitMilligrayPerMin   = "23176::mGy/min";
inline constexpr std::string_view kUnitMilligrayPerHour  = "23177::mGy/hr";
inline constexpr std::string_view kUnitMilligrayPerPulse = "23178::mGy/pulse";
inline constexpr std::string_view kUnitRPerMas           = "23179::R/mAs";
inline constexpr std::string_view kUnitMilliroentgenPerMas = "23180::mR/mAs";
inline constexpr std::string_view kUnitMilligrayPerMas   = "23181::mGy/mAs";
inline constexpr std::string_view kUnitMicrograyPerMas   = "23182::uGy/mAs";
inline constexpr std::string_view kUnitMilliradPerR      = "23026::mrad/R";
inline constexpr std::string_view kRatePerSec            = "25116::/Sec";
inline constexpr std::string_view kRatePerMin            = "25117::/Min";
inline constexpr std::string_view kRatePerHour           = "25118::/Hour";
inline constexpr std::string_view kRatePerPulse          = "25119::/Pulse";
inline constexpr std::string_view kUnitCelsius           = "25102::°C";
inline constexpr std::string_view kUnitFahrenheit        = "25103::°F";
inline constexpr std::string_view kUnitKelvin            = "25104::K";
inline constexpr std::string_view kUnitInHg              = "25105::inHg";
inline constexpr std::string_view kUnitMmHg              = "25106::mmHg";
inline constexpr std::string_view kUnitMbar              = "25107::mbar";
inline constexpr std::string_view kUnitHpa               = "25108::hPa";
inline constexpr std::string_view kUnitFeet              = "25109::feet";
inline constexpr std::string_view kUnitMeter             = "25110::meter";
/// The percent sign is the same in every language, so this unit is no table key.
inline constexpr std::string_view kUnitPercent           = "%";

// The test guide: header and instruction lines.
inline constexpr std::string_view kDetectorNotConnected  = "22864::Detector not connected";
inline constexpr std::string_view kEmptyLine             = "22338:: %%1";
inline constexpr std::string_view kCharging              = "22335::Charging";
inline constexpr std::string_view kBatteryStatus         = "22336:: Battery Status: %%1";
inline constexpr std::string_view kTargetFilterLine      = "22337:: Target/Filter: %%1";
inline constexpr std::string_view kNoIonChamber          = "25137::No Ion Chamber";
inline constexpr std::string_view kIonChamberLine        = "25136::Ion Chamber : %%1";
inline constexpr std::string_view kMasInputLine          = "25610::mAs Input  : %%1";
inline constexpr std::string_view kClickStart            = "22347::%%1. Click 'Start' to begin the test.";
inline constexpr std::string_view kTakeExposure          = "22348::%%1. Take exposure.";
inline constexpr std::string_view kSetSdd                = "23191::1. Set SDD to %%1.";
inline constexpr std::string_view kSetFss                = "23192::    Set FSS to %%1.";
inline constexpr std::string_view kSetFocalSpotSize      = "23167::    Set Focal Spot Size to %%1.";
inline constexpr std::string_view kSetKvp                = "23193::    Set Machine kVp to %%1 KV.";
inline constexpr std::string_view kSetKvpFirst           = "22340::1. Set Machine kVp to %%1 KV.";
inline constexpr std::string_view kSetMa                 = "22341::    Set Machine mA to %%1 mA.";
inline constexpr std::string_view kSetMas                = "22342::    Set Machine mAs to %%1.";
inline constexpr std::string_view kSetTime               = "22343::    Set Machine Time to %%1 ms.";
inline constexpr std::string_view kSetPhantomThickness   = "22344::    Set Phantom Thickness to %%1.";
inline constexpr std::string_view kSetMode               = "22345::    Set Mode to %%1.";
inline constexpr std::string_view kSetBreastThickness    = "23166::    Set Breast Thickness to %%1 cm.";
inline constexpr std::string_view kSetSbd                = "23165::    Set SBD to %%1 cm.";
inline constexpr std::string_view kSetSid                = "23164::    Set SID to %%1 cm.";
inline constexpr std::string_view kSetAnode              = "23163::    Set Anode to %%1.";
inline constexpr std::string_view kSetFilter             = "23161::    Set Filter to %%1.";
inline constexpr std::string_view kSetTargetMaterial     = "23160::    Set Target Material to %%1.";
inline constexpr std::string_view kSetGlandularFraction  = "23194::    Set Glandular Fraction to %%1.";
inline constexpr std::string_view kSetEnergyCorrection   = "23195::    Set Energy Correction Factor to %%1.";
inline constexpr std::string_view kSetDensityControl     = "23196::    Set Density Control Settings to %%1.";
inline constexpr std::string_view kSetCassetteSize       = "23197::    Set Cassette Size to %%1 cm.";
inline constexpr std::string_view kSetFilmType           = "23198::    Set Film Type to %%1.";
inline constexpr std::string_view kSetAecMode            = "23199::    Set AEC Mode to %%1.";
inline constexpr std::string_view kSetFieldRestriction   = "23200::    Set Field Restriction to %%1.";
inline constexpr std::string_view kSetImagingMode        = "23201::    Set Imaging Mode to %%1.";
inline constexpr std::string_view kSetScreenType         = "23202::    Set Screen Type to %%1.";
inline constexpr std::string_view kSetMeasuredHvl        = "23203::    Set Measured HVL to %%1.";
inline constexpr std::string_view kSetPhantom            = "23204::    Set Phantom to %%1.";

// The test guide: everything else.
inline constexpr std::string_view kTestInProgress        = "22317::Test in progress";
inline constexpr std::string_view kRetrievingWaveform    = "22318::Retrieving waveform, please wait...";
inline constexpr std::string_view kResettingPleaseWait   = "25631::Resetting, Please Wait ...";
inline constexpr std::string_view kZeroingPleaseWait     = "25632::Zeroing mAs, Please Wait ...";
inline constexpr std::string_view kKvWaveformTab         = "22330::kVp [KV]";
inline constexpr std::string_view kMaWaveformTab         = "25626::mA Waveform";
inline constexpr std::string_view kWakeUpDetector        = "22867::Wake Up Detector";
inline constexpr std::string_view kIonChamber            = "25122::Ion Chamber";
inline constexpr std::string_view kDisconnect            = "25615::Disconnect From Detectors";
inline constexpr std::string_view kRedoExposure          = "22866::Redo Exposure";
inline constexpr std::string_view kTargetFilter          = "22373::Target/Filter";
inline constexpr std::string_view kShowAll               = "23210::Show &All";
inline constexpr std::string_view kPlugInResponse        = "25629::Vorex ZRD47500 Plug-In Response";
inline constexpr std::string_view kDetectorUnsupported   = "25627::The connected detector does not support %%1.";
inline constexpr std::string_view kScanForDetectors      = "25628::Please click Start button to scan for detectors.";
inline constexpr std::string_view kDetectorZrd           = "25607::ZRD47500";
inline constexpr std::string_view kDetectorPelomark      = "25606::Pelomark";

// Reports: headings.
inline constexpr std::string_view kConfiguration         = "310::Configuration";
inline constexpr std::string_view kValue                 = "231::Value";
inline constexpr std::string_view kResult                = "312::Result:";
inline constexpr std::string_view kUnit                  = "234::Unit";
inline constexpr std::string_view kHighLimit             = "232::High limit";
inline constexpr std::string_view kLowLimit              = "233::Low limit";
inline constexpr std::string_view kStandard              = "22322::Standard";
inline constexpr std::string_view kComments              = "22964::Comments:";
inline constexpr std::string_view kMeasurementSettings   = "22005::Measurement Settings";
inline constexpr std::string_view kMachineSettings       = "22107::Machine Settings";
inline constexpr std::string_view kPelomarkModeSettings  = "25050::Pelomark Mode Settings";
inline constexpr std::string_view kPelomarkUnitSettings  = "25051::Pelomark Unit Settings";
inline constexpr std::string_view kSensorAdjust          = "25063::Temperature & Pressure Sensor Adjust";

// Reports: the configuration.
inline constexpr std::string_view kDetectorMode          = "22364::Detector Mode";
inline constexpr std::string_view kDetectorSettings      = "22365::Detector Settings";
inline constexpr std::string_view kExposureUnit          = "22366::Exposure Unit";
inline constexpr std::string_view kExposureRateUnit      = "22367::Exposure Rate Unit";
inline constexpr std::string_view kFluoroType            = "22008::Fluoro Type";
inline constexpr std::string_view kTimeUnits             = "22009::Time Units";
inline constexpr std::string_view kPercentKv             = "22010::%KV";
inline constexpr std::string_view kDelay                 = "22011::Delay";
inline constexpr std::string_view kIncludeDelay          = "22013::Include Delay";
inline constexpr std::string_view kOn                    = "25100::ON";
inline constexpr std::string_view kOff                   = "25101::OFF";
inline constexpr std::string_view kAirDensityCorrection  = "25052::Air Density Correction";
inline constexpr std::string_view kUserSetTemperature    = "25053::User Set Temperature";
inline constexpr std::string_view kUserSetPressure       = "25054::User Set Pressure";
inline constexpr std::string_view kReferenceTemperature  = "25055::Reference Temperature";
inline constexpr std::string_view kPelomarkMode          = "25056::Mode";
inline constexpr std::string_view kAutomaticReset        = "25057::Automatic Reset";
inline constexpr std::string_view kDoseUnit              = "25058::Dose Unit";
inline constexpr std::string_view kDoseRateUnit          = "25059::Dose Rate Unit";
inline constexpr std::string_view kFrameRate             = "25060::Frame Rate";
inline constexpr std::string_view kTemperatureUnit       = "25061::Temperature Unit";
inline constexpr std::string_view kPressureUnit          = "25062::Pressure Unit";
inline constexpr std::string_view kTemperatureOffset     = "25064::Internal Temperature Offset";
inline constexpr std::string_view kPressureOffset        = "25065::Internal Pressure Offset";
inline constexpr std::string_view kIonChamberName        = "25261::Ion Chamber Name";
inline constexpr std::string_view kCalFactor             = "25262::Cal Factor";
inline constexpr std::string_view kCalConstant           = "25263::Cal Constant";
inline constexpr std::string_view kMasInputType          = "25611::mAs Input Type";
inline constexpr std::string_view kSdd                   = "22374::SDD";
inline constexpr std::string_view kGeneratorSetup        = "22139::Generator Setup";
inline constexpr std::string_view kFocalSpotSize         = "22106::Focal Spot Size";
inline constexpr std::string_view kKvp                   = "22524::kVp";
inline constexpr std::string_view kBreastThickness       = "22616::Breast Thickness";
inline constexpr std::string_view kGlandularFraction     = "22119::Glandular Fraction";
inline constexpr std::string_view kNominalKv             = "22606::Nominal KV";
inline constexpr std::string_view kSourceToDetector      = "22619::Source to Detector Distance";
inline constexpr std::string_view kSourceToBucky         = "22618::Souce to Bucky Distance";
inline constexpr std::string_view kCorrectionFactor      = "22617::Correction Factor";
inline constexpr std::string_view kDensityControl        = "22123::Density Control Settings";
inline constexpr std::string_view kCassetteSize          = "22974::Cassette Size";
inline constexpr std::string_view kSid                   = "22393::SID";
inline constexpr std::string_view kFilmType              = "22124::Film Type";
inline constexpr std::string_view kFilter                = "22125::Filter";
inline constexpr std::string_view kAecMode               = "22126::AEC Mode";
inline constexpr std::string_view kFieldRestriction      = "22127::Field Restriction";
inline constexpr std::string_view kImagingMode           = "22128::Imaging Mode";
inline constexpr std::string_view kScreenType            = "22129::Screen Type";
inline constexpr std::string_view kTargetMaterial        = "22130::Target Material";
inline constexpr std::string_view kMeasuredHvl           = "22134::Measured HVL";
inline constexpr std::string_view kPhantom               = "22120::Phantom";
inline constexpr std::string_view kAnode                 = "22138::Anode(Target)";
inline constexpr std::string_view kSetMasCaption         = "22538::Set mAs";
inline constexpr std::string_view kSetMaCaption          = "22537::Set mA";
inline constexpr std::string_view kSidInCm               = "22131::SID(cm)";
inline constexpr std::string_view kYes                   = "22240::Yes";
inline constexpr std::string_view kNo                    = "22241::No";

// Reports: waveforms.
inline constexpr std::string_view kKvWaveform            = "22301::KV Waveform";
inline constexpr std::string_view kTimeInSec             = "22329::Time [sec]";
inline constexpr std::string_view kTimeInMsec            = "25630::Time [msec]";

// Results, limits and instruments.
inline constexpr std::string_view kDefaultInstrument     = "23159::ZRD 47500WD";
inline constexpr std::string_view kExposureCaption       = "23183::Exposure ";
inline constexpr std::string_view kExposureHeading       = "22847::Exposure ";
inline constexpr std::string_view kCalculations          = "23011::Calculations";
inline constexpr std::string_view kLoadingResultData     = "22315::Loading Result Data";
inline constexpr std::string_view kFluoroLimitHint =
    "23006::You have to put +5% and -5% in the limit settings in order to get +/- limits.";

// The frame of a report: cover, feet, contents.
inline constexpr std::string_view kReportTitle           = "31001::Test report";
inline constexpr std::string_view kReportPage            = "31002::Page %%1 of %%2";
inline constexpr std::string_view kReportContents        = "31003::Contents";
inline constexpr std::string_view kReportFile            = "31004::File";
inline constexpr std::string_view kReportDate            = "31005::Date of the report";
inline constexpr std::string_view kReportProgram         = "31006::Program";
inline constexpr std::string_view kReportInstruments     = "31007::Instruments";
inline constexpr std::string_view kReportSerialNumber    = "31008::Serial number";
inline constexpr std::string_view kReportCalibrated      = "31009::Calibrated";
inline constexpr std::string_view kReportNoInstruments   = "31010::The file names no instruments.";
inline constexpr std::string_view kReportStandards       = "31011::Judged by";
inline constexpr std::string_view kReportVersion         = "31012::Version";
inline constexpr std::string_view kReportNoStandards     = "31013::No standard: no value was judged by a limit.";
inline constexpr std::string_view kReportElements        = "31014::Tests of the file";
inline constexpr std::string_view kReportTest            = "31015::Test";
inline constexpr std::string_view kReportGroup           = "31016::Group";
inline constexpr std::string_view kReportStatus          = "31017::Status";
inline constexpr std::string_view kReportNotTested       = "31018::Not tested";
inline constexpr std::string_view kReportFailuresOnly    = "31020::Only failed values are shown.";
inline constexpr std::string_view kReportClauses         = "31022::Clauses";
inline constexpr std::string_view kReportContinued       = "31030::%%1 (continued)";
inline constexpr std::string_view kReportTally           = "31031::Tests";
inline constexpr std::string_view kReportTallyOf         = "31032::%%1: %%2 passed, %%3 failed, %%4 not applicable, %%5 not performed";
inline constexpr std::string_view kReportSite            = "31033::Site";
inline constexpr std::string_view kReportRoom            = "31034::Room";
inline constexpr std::string_view kReportTechnologist    = "31035::Technologist";
inline constexpr std::string_view kReportUnit            = "31036::X-ray unit";
inline constexpr std::string_view kReportSurveyDate      = "31037::Date of the survey";
inline constexpr std::string_view kReportMeasured        = "31038::Measured";
inline constexpr std::string_view kReportFromTo          = "31039::%%1 to %%2";
inline constexpr std::string_view kReportMeasuredWith    = "31040::Measured with";
inline constexpr std::string_view kReportEnding          = "31041::End of the run";
inline constexpr std::string_view kReportJudged          = "31042::Judged";
inline constexpr std::string_view kReportLimits          = "31043::Limits";
inline constexpr std::string_view kReportNoLimits        = "31044::none of the selected standards limits a value";
inline constexpr std::string_view kReportChanged         = "31045::Changed since";
/// The decimal sign of the language.
inline constexpr std::string_view kDecimalSign           = "31021::.";

// Names of the tests.
inline constexpr std::string_view kTestRadioRepro        = "31201::Radiography Reproducibility";
inline constexpr std::string_view kTestRadioAccuracy     = "31202::Radiography Accuracy";
inline constexpr std::string_view kTestRadioLinearity    = "31203::Radiography Linearity";
inline constexpr std::string_view kTestFluoroAccuracy    = "31204::Fluoroscopy Accuracy";
inline constexpr std::string_view kTestFluoroExposure    = "31205::Fluoroscopy Exposure";
inline constexpr std::string_view kTestMammoAccRepro     = "31206::Mammography Accuracy and Reproducibility";
inline constexpr std::string_view kTestMammoAec          = "31207::Mammography AEC";
inline constexpr std::string_view kTestMammoRadiation    = "31208::Mammography Radiation Output";
inline constexpr std::string_view kTestSurvey            = "31209::Annual Mammography Survey";

// What the commands print.
inline constexpr std::string_view kShowNoDetector        = "31101::no detector";
inline constexpr std::string_view kShowMasMeter          = "31102::mAs meter";
inline constexpr std::string_view kShowAndMasMeter       = "31103::%%1 and mAs meter";
inline constexpr std::string_view kShowOnePlanned        = "31104::%%1 exposure planned";
inline constexpr std::string_view kShowPlanned           = "31105::%%1 exposures planned";
inline constexpr std::string_view kShowNoneStored        = "31106::No exposure is stored";
inline constexpr std::string_view kShowStored            = "31107::%%1 exposures are stored, %%2 were planned";
inline constexpr std::string_view kShowInstrument        = "31108::%%1, serial number %%2";
inline constexpr std::string_view kShowCalibrated        = "31109::%%1, calibrated %%2";
inline constexpr std::string_view kShowMeasuredWith      = "31110::Measured with %%1";
inline constexpr std::string_view kShowComment           = "31111::Comment: %%1";
inline constexpr std::string_view kShowEdited            = "31112::Edited values: %%1";
inline constexpr std::string_view kShowExposure          = "31113::Exposure";
inline constexpr std::string_view kShowNoReading         = "31114::not a usable reading";
inline constexpr std::string_view kShowFailedValues      = "31115::Failed values";
inline constexpr std::string_view kShowExposureValue     = "31116::Exposure %%1: %%2";
inline constexpr std::string_view kShowWaveforms         = "31117::Waveforms: %%1";
inline constexpr std::string_view kShowWaveformOf        = "31118::%%1 of exposure %%2, %%3 samples";
inline constexpr std::string_view kShowWaveform          = "31119::Waveform: %%1, %%2 samples";
inline constexpr std::string_view kShowOneReplaced       = "31120::Replaced by a redo: %%1 exposure (vorex show --all)";
inline constexpr std::string_view kShowReplaced          = "31121::Replaced by a redo: %%1 exposures (vorex show --all)";
inline constexpr std::string_view kShowReplacedList      = "31122::Replaced by a redo, not judged";
inline constexpr std::string_view kShowReplacedOne       = "31123::Exposure %%1, readings %%2, replaced %%3";
inline constexpr std::string_view kShowNotTested         = "31124::not tested";
inline constexpr std::string_view kShowJudgedBy          = "31125::Judged by: %%1";
inline constexpr std::string_view kShowNoStandard        = "31126::no standard";
inline constexpr std::string_view kShowAtMost            = "31127::at most";
inline constexpr std::string_view kShowAtLeast           = "31128::at least";
inline constexpr std::string_view kShowAsExpression      = "31129::%%1 as %%2";
inline constexpr std::string_view kShowNowThen           = "31130::%%1: now %%2, then %%3";
inline constexpr std::string_view kShowNone              = "31131::none";
inline constexpr std::string_view kShowMore              = "31132::and %%1 more";
inline constexpr std::string_view kShowUnnamedProgram    = "31133::an unnamed program";
inline constexpr std::string_view kShowOrigin            = "31134::%%1, formulas %%2";
inline constexpr std::string_view kShowStopped           = "31135::stopped after %%1 of %%2";
inline constexpr std::string_view kShowBroken            = "31136::broke off";
inline constexpr std::string_view kShowWithFault         = "31137::with a fault";

// Why a run broke off or what failed during it, as it is saved: see StoredMessage.
inline constexpr std::string_view kReasonLinkLost        = "31480::the link to the instruments was lost";
inline constexpr std::string_view kReasonLinkLostAfter   = "31481::the link to the instruments was lost after exposure %%1";
inline constexpr std::string_view kReasonNothingToCome   = "31482::nothing more came from the instruments";
inline constexpr std::string_view kReasonUsedUp          = "31483::the recording is used up; exposures delivered: %%1";
inline constexpr std::string_view kReasonNobody          = "31484::there is no operator at the X-ray unit";
inline constexpr std::string_view kReasonBatteryEmpty    = "31485::the battery of the detector is empty";
inline constexpr std::string_view kReasonRedo            = "31486::redo of exposure %%1";
inline constexpr std::string_view kReasonInRedo          = "31487::redo of exposure %%1: %%2";
inline constexpr std::string_view kReasonInExposure      = "31488::exposure %%1: %%2";
inline constexpr std::string_view kReasonRefused         = "31490::the X-ray unit refuses %%1; it takes %%2";

// Notes next to a verdict.
inline constexpr std::string_view kNoteNoValue           = "31489::exposure %%1 has no value for %%2, judged as 0";
inline constexpr std::string_view kNoteNotMeasured       = "31491::exposure %%1 has no value for %%2";
inline constexpr std::string_view kNoteNoReading         = "31492::exposure %%1 has no reading";
inline constexpr std::string_view kNoteLateReading       = "31493::exposure %%1 has no reading; what came after Stop may be in exposure %%2";

// A line of the log of edited values, as it is saved: exposure, new value, caption of the column.
inline constexpr std::string_view kEditedValue           = "31494::Exposure #%%1, %%3: %%2";

inline constexpr std::string_view kShowTaken             = "31138::Taken %%1 to %%2 by %%3";
inline constexpr std::string_view kShowRun               = "31139::The run %%1";
inline constexpr std::string_view kShowRunEnded          = "31140::The run ended %%1";
inline constexpr std::string_view kShowSettingsEdited    = "31141::Settings edited since:";
inline constexpr std::string_view kShowJudged            = "31142::Judged %%1 by %%2";
inline constexpr std::string_view kShowOtherLimits       = "31143::Limits changed since it was judged:";
inline constexpr std::string_view kShowElementChange     = "31144::element %%1: %%2 -> %%3: %%4";
inline constexpr std::string_view kShowValueChange       = "31145::%%1 exposure %%2, %%3";
inline constexpr std::string_view kShowOtherSettings     = "31146::the settings that decide have changed";
inline constexpr std::string_view kShowNoLimit           = "31147::no limit";
inline constexpr std::string_view kShowBefore            = "31148::%%1, before %%2";
inline constexpr std::string_view kSavedAs               = "31149::Saved as %%1";
inline constexpr std::string_view kReportWrittenAs       = "31150::Report written as %%1";
inline constexpr std::string_view kNoStandards           = "31151::There is no standard.";
inline constexpr std::string_view kStandardAtVoltage     = "31152::%%1 at %%2 kV";
inline constexpr std::string_view kStandardReadings      = "31153::%%1 (readings in %%2)";

inline constexpr std::string_view kNoReading             = "31160::no reading";

// clang-format on

}  // namespace vorex::text
