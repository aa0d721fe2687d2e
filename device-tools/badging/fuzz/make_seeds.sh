#!/bin/sh
# make_seeds.sh FOLDER: fills the folder with small packages, made by the real aapt, for the fuzz target to begin with.
set -eu
folder=$1
framework=${ORVANTA_FRAMEWORK:-/usr/share/android-framework-res/framework-res.apk}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$folder"

strings() {
  mkdir -p "$work/res/values$1"
  echo "<resources><string name=\"app\">$2</string></resources>" > "$work/res/values$1/strings.xml"
}
strings '' 'Seed'
strings '-de' 'Samen'
strings '-b+sr+Latn' 'Seme'
strings '-zh-rTW' '種子'
strings '-es-rMX-v21' 'Semilla'
strings '-sw320dp-port' 'Klein'
mkdir -p "$work/res/drawable-hdpi" "$work/res/drawable-xxhdpi" "$work/res/values"
for density in hdpi xxhdpi; do
  echo '<shape xmlns:android="http://schemas.android.com/apk/res/android"/>' > "$work/res/drawable-$density/icon.xml"
done
cat > "$work/res/values/other.xml" <<'END'
<resources><string name="first">@string/second</string><string name="second">@string/app</string>
<integer name="number">1</integer><bool name="yes">true</bool><style name="s"><item name="android:text">x</item></style>
</resources>
END
cat > "$work/AndroidManifest.xml" <<'END'
<manifest xmlns:android="http://schemas.android.com/apk/res/android" package="org.example.seed" split="part"
    android:versionCode="3" android:versionName="@string/app" android:installLocation="auto">
  <uses-sdk android:minSdkVersion="9" android:targetSdkVersion="29"/>
  <uses-permission android:name="android.permission.ACCESS_FINE_LOCATION" android:maxSdkVersion="28"/>
  <uses-permission-sdk-23 android:name="android.permission.BLUETOOTH"/>
  <uses-feature android:name="android.hardware.camera.flash" android:version="2"/>
  <feature-group android:label="@string/second"><uses-feature android:name="android.hardware.wifi"/></feature-group>
  <compatible-screens><screen android:screenSize="small" android:screenDensity="ldpi"/></compatible-screens>
  <application android:label="@string/first" android:icon="@drawable/icon" android:debuggable="@bool/yes">
    <activity android:name=".Main" android:label="@string/second" android:screenOrientation="portrait">
      <intent-filter>
        <action android:name="android.intent.action.MAIN"/><category android:name="android.intent.category.LAUNCHER"/>
      </intent-filter>
    </activity>
    <service android:name=".Service" android:permission="org.example.P"/>
    <provider android:name=".Provider" android:authorities="org.example" android:exported="@bool/yes"/>
  </application>
</manifest>
END
# Each package as it is, and its two parts unpacked, which can be changed without breaking an archive around them.
build() {
  name=$1
  shift
  aapt package -f -M "$work/AndroidManifest.xml" -S "$work/res" -I "$framework" -F "$folder/$name.apk" "$@"
  unzip -p "$folder/$name.apk" AndroidManifest.xml resources.arsc > "$folder/$name.parts"
}
build narrow
build wide --utf16
# The reader gives up at a name that refers to itself, so only one package has such a name.
strings '-es-rMX-v21' '@string/app'
build loop
sed -i 's/.string.first/Text/; s/<feature-group.*//; s/minSdkVersion="9"/minSdkVersion="Q"/' "$work/AndroidManifest.xml"
build inline
