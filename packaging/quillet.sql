-- What wixl cannot say about the installation package: a statement a line, for Libmsi. $program stands for the key of the
-- program's file, $version for its version.

-- Without a version, the installer would rather keep an old program file than replace it.
UPDATE `File` SET `Version` = '$version.0', `Language` = '1031' WHERE `File` = '$program'

-- What may be given on the command line reaches the part of the installer that has the rights.
UPDATE `Property` SET `Value` = 'WIX_DOWNGRADE_DETECTED;WIX_UPGRADE_DETECTED;INSTALLDIR;URLSCHEME;REMEMBEREDDIR;REMEMBEREDSCHEME;TAKENSCHEME;WINDOWSBUILD' WHERE `Property` = 'SecureCustomProperties'

-- With the program: its place, and its name for callers who do not know the place.
INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Value`, `Component_`) VALUES ('InstallDir', 2, 'SOFTWARE\Orvane\Quillet', 'InstallDir', '[INSTALLDIR]', '$program')
INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Value`, `Component_`) VALUES ('AppPath', 2, 'SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\quillet.exe', '', '[#$program]', '$program')

-- With URLSCHEME=name: one scheme for links. Never a star beside [URLSCHEME] itself, which would remove all classes if
-- the name were lost; below it, all goes that was put there.
UPDATE `Component` SET `Condition` = 'URLSCHEME' WHERE `Component` = 'UrlScheme'
UPDATE `Registry` SET `Key` = 'SOFTWARE\Orvane\Quillet' WHERE `Name` = 'UrlScheme'
INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Value`, `Component_`) VALUES ('Scheme', 2, 'SOFTWARE\Classes\[URLSCHEME]', '', 'URL:[URLSCHEME]', 'UrlScheme')
INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Value`, `Component_`) VALUES ('SchemeMark', 2, 'SOFTWARE\Classes\[URLSCHEME]', 'URL Protocol', '', 'UrlScheme')
INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Value`, `Component_`) VALUES ('SchemeShell', 2, 'SOFTWARE\Classes\[URLSCHEME]\shell', '*', '', 'UrlScheme')
INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Value`, `Component_`) VALUES ('SchemeCommand', 2, 'SOFTWARE\Classes\[URLSCHEME]\shell\open\command', '', '"[#$program]" -url="%1"', 'UrlScheme')

-- A class that exists, be it a scheme or a type of file, belongs to somebody else.
INSERT INTO `AppSearch` (`Property`, `Signature_`) VALUES ('TAKENSCHEME', 'TakenScheme')
INSERT INTO `RegLocator` (`Signature_`, `Root`, `Key`, `Name`, `Type`) VALUES ('TakenScheme', 2, 'SOFTWARE\Classes\[URLSCHEME]', '', 18)

-- Where wixl puts actions that only set a property differs from release to release (after the end of the one sequence, after
-- the launch conditions in the other), and it gives them a flag for scripts.
UPDATE `InstallUISequence` SET `Sequence` = 51 WHERE `Action` = 'RecallDir'
UPDATE `InstallUISequence` SET `Sequence` = 52 WHERE `Action` = 'RecallScheme'
UPDATE `InstallExecuteSequence` SET `Sequence` = 51 WHERE `Action` = 'RecallDir'
UPDATE `InstallExecuteSequence` SET `Sequence` = 52 WHERE `Action` = 'RecallScheme'
UPDATE `CustomAction` SET `Type` = 51
