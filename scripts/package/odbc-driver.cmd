@echo off
rem Gives an installed ODBC driver the name by which Kerno Tools looks for one, and tests it.
rem
rem   odbc-driver.cmd             lists the drivers and asks
rem   odbc-driver.cmd "DRIVER"    takes this one
rem
rem It must be started as administrator: right-click it, "Run as administrator".
setlocal
set "wanted=MySQL ODBC 3.51 Driver"
set "bits=@BITS@"
set "list=HKLM\SOFTWARE\ODBC\ODBCINST.INI"
set "chosen=%~1"

echo This Kerno Tools is the %bits%-bit one. The %bits%-bit ODBC drivers of this computer:
echo.
set count=0
rem Each driver is a key with a value "Driver"; the last part of the key's path is its name.
for /f "delims=" %%l in ('reg query "%list%" /reg:%bits% 2^>nul') do (
    call :look "%%~nxl"
)
if %count%==0 (
    echo   none
    echo.
    echo Install the %bits%-bit MariaDB Connector/ODBC or MySQL Connector/ODBC and start this again. A driver of the other
    echo kind does not count: either install this kind, or the other Kerno Tools.
    goto end
)
echo.
if not "%chosen%"=="" goto name
set "number="
set /p "number=Number of the driver that Kerno Tools is to use (Enter for none): "
if "%number%"=="" goto end
rem Without what may stand around it.
for /f %%n in ("%number%") do set "number=%%n"
call set "chosen=%%driver%number%%%"
if not "%chosen%"=="" goto name
echo There is no driver of that number.
goto end

:name
if /i not "%chosen%"=="%wanted%" (
    rem The driver's own entry under a second name, and that name in the list of drivers.
    reg copy "%list%\%chosen%" "%list%\%wanted%" /s /f /reg:%bits% >nul 2>nul
    if errorlevel 1 goto refused
    reg add "%list%\ODBC Drivers" /v "%wanted%" /t REG_SZ /d Installed /f /reg:%bits% >nul 2>nul
    if errorlevel 1 goto refused
    echo "%chosen%" has the name "%wanted%" now, too.
)

set "file="
for /f "tokens=2,*" %%a in ('reg query "%list%\%wanted%" /v Driver /reg:%bits% 2^>nul') do set "file=%%b"
if not defined file (
    echo The entry of "%wanted%" names no file. Install the driver anew.
    goto end
)
call set "file=%file%"
if exist "%file%" (
    echo Its file is there: %file%
) else (
    echo Its file is missing: %file%
    echo Install the driver anew, then start this again.
    goto end
)

set "shell=%SystemRoot%\System32\WindowsPowerShell\v1.0\powershell.exe"
if %bits%==32 if exist "%SystemRoot%\SysWOW64\WindowsPowerShell\v1.0\powershell.exe" set "shell=%SystemRoot%\SysWOW64\WindowsPowerShell\v1.0\powershell.exe"
if exist "%shell%" (
    echo What it answers when it is asked for MySQL on this computer, without a login:
    "%shell%" -NoProfile -Command "try { (New-Object System.Data.Odbc.OdbcConnection 'DRIVER={%wanted%};SERVER=localhost;OPTION=3').Open(); 'MySQL answered.' } catch { $_.Exception.GetBaseException().Message }"
    echo.
    echo "Access denied" is good: driver and MySQL work, and MySQL wants a name. "Data source name not found" or
    echo "architecture mismatch": the driver is not of this kind. "Can't connect": MySQL does not run here.
) else (
    echo Now press "Test MySQL" in Step 1 of the MySQL Setup Wizard.
)
goto end

:refused
echo The name could not be given. Start this as administrator: right-click it, "Run as administrator".

:end
echo.
if "%~1"=="" pause
goto :eof

:look
reg query "%list%\%~1" /v Driver /reg:%bits% >nul 2>nul
if errorlevel 1 goto :eof
set /a count+=1
set "driver%count%=%~1"
echo   %count%  %~1
