<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="C">
<context>
    <name>design</name>
    <message>
        <source>应用名称</source>
        <translation>App name</translation>
    </message>
    <message>
        <source>应用包名</source>
        <translation>Package name</translation>
    </message>
    <message>
        <source>版本</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>Build APK</source>
        <translation>Build APK</translation>
    </message>
    <message>
        <source>文件名</source>
        <translation>File name</translation>
    </message>
    <message>
        <source>设备已经安装的版本</source>
        <translation>Installed on headset</translation>
    </message>
    <message>
        <source>磁盘空间</source>
        <translation>Storage</translation>
    </message>
    <message>
        <source>已使用</source>
        <translation>Used</translation>
    </message>
    <message>
        <source>可用空间</source>
        <translation>Free</translation>
    </message>
    <message>
        <source>已用%</source>
        <translation>Used %</translation>
    </message>
    <message>
        <source>安装</source>
        <translation>Install</translation>
    </message>
    <message>
        <source>Install APK</source>
        <translation>Install APK</translation>
    </message>
    <message>
        <source>授予权限</source>
        <translation>Grant permissions</translation>
    </message>
    <message>
        <source>授予列表中的所有权限</source>
        <translation>Grant all permissions in the list</translation>
    </message>
    <message>
        <source>权限</source>
        <translation>Permissions</translation>
    </message>
    <message>
        <source>在所选应用程序上显示权限</source>
        <translation>Show the permissions of this app</translation>
    </message>
    <message>
        <source>卸载</source>
        <translation>Uninstall</translation>
    </message>
    <message>
        <source>卸载选定的应用程序</source>
        <translation>Uninstall this app</translation>
    </message>
    <message>
        <source>卸载并保留数据</source>
        <translation>Uninstall, keep data</translation>
    </message>
    <message>
        <source>卸载选定的应用程序并保留设备上的所有数据</source>
        <translation>Uninstall this app and keep all its data on the headset</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>Try me</source>
        <translation>Try me</translation>
    </message>
    <message>
        <source>退出关闭ADB</source>
        <translation>Stop ADB on exit</translation>
    </message>
    <message>
        <source>在退出时关闭ADB服务（下次启动速度较慢，但不会锁定最后安装的目录）</source>
        <translation>Stop the ADB server on exit (the next start is slower, but the folder installed from last is not kept locked)</translation>
    </message>
    <message>
        <source>已安装的游戏程序(备份/已用空间)</source>
        <translation>Installed apps (backup, space)</translation>
    </message>
    <message>
        <source>Halden网</source>
        <translation>Halden site</translation>
    </message>
    <message>
        <source>功能命令合集</source>
        <translation>Headset settings</translation>
    </message>
    <message>
        <source>ADB 命令行</source>
        <translation>ADB command line</translation>
    </message>
    <message>
        <source>打开Quest磁盘驱动器</source>
        <translation>Open Quest as drive</translation>
    </message>
    <message>
        <source>Mount MTP-Device</source>
        <translation>Mount MTP-Device</translation>
    </message>
    <message>
        <source>Run ADB Command on Device</source>
        <translation>Run ADB Command on Device</translation>
    </message>
    <message>
        <source>未安装的应用</source>
        <translation>Apps not installed</translation>
    </message>
    <message>
        <source>卸载选定的游戏程序</source>
        <translation>Uninstall the chosen game</translation>
    </message>
    <message>
        <source>撤消资源管理器菜单集成</source>
        <translation>Undo the Explorer menu entry</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Run</translation>
    </message>
    <message>
        <source>要安装APK，请右键单击APK文件，然后选择Orvanta</source>
        <translation>To install an APK, right-click the APK file and choose Orvanta</translation>
    </message>
    <message>
        <source>未安装</source>
        <translation>Not installed</translation>
    </message>
    <message>
        <source>Older</source>
        <translation>Older</translation>
    </message>
    <message>
        <source>Newer</source>
        <translation>Newer</translation>
    </message>
    <message>
        <source>Same</source>
        <translation>Same</translation>
    </message>
    <message>
        <source>%1 Buildnumber found</source>
        <translation>%1 Buildnumber found</translation>
    </message>
    <message>
        <source>Command Error: </source>
        <translation>Command Error: </translation>
    </message>
    <message>
        <source>Command Line empty</source>
        <translation>Command Line empty</translation>
    </message>
    <message>
        <source> File or command not found</source>
        <translation> File or command not found</translation>
    </message>
    <message>
        <source>CreatePipe failed. Error: </source>
        <translation>CreatePipe failed. Error: </translation>
    </message>
    <message>
        <source>Found OBB Files: </source>
        <translation>Found OBB Files: </translation>
    </message>
    <message>
        <source>所有任务都完成了！</source>
        <translation>All tasks are done!</translation>
    </message>
    <message>
        <source>尝试连接设备以进行Orvanta，请稍候！</source>
        <translation>Trying to reach the headset for Orvanta, please wait!</translation>
    </message>
    <message>
        <source>跳过所有obb文件</source>
        <translation>All obb files skipped</translation>
    </message>
    <message>
        <source>跳过的obb文件：</source>
        <translation>Skipped obb file:</translation>
    </message>
    <message>
        <source>安装额外的 obb 文件：</source>
        <translation>Installing extra obb file:</translation>
    </message>
    <message>
        <source>删除设备上存在的文件夹：</source>
        <translation>Deleting the folder on the headset:</translation>
    </message>
    <message>
        <source>只能在以后重新安装APK有相同的签名时&#xd;
没有正确的签名，APK将无法在以后重新安装！！！&#xd;
&#xd;
你确定吗？</source>
        <translation>The APK can only be installed again later if it has the same signature.&#xd;
Without the right signature it can never be installed again!!!&#xd;
&#xd;
Are you sure?</translation>
    </message>
    <message>
        <source>完毕！</source>
        <translation>Done!</translation>
    </message>
    <message>
        <source>Package %1未安装</source>
        <translation>Package %1 is not installed</translation>
    </message>
    <message>
        <source>Try connecting Device for APK-uninstall (%1)</source>
        <translation>Try connecting Device for APK-uninstall (%1)</translation>
    </message>
    <message>
        <source>Connection Error</source>
        <translation>Connection Error</translation>
    </message>
    <message>
        <source>Found OBB Files (Click to Skip)</source>
        <translation>Found OBB Files (Click to Skip)</translation>
    </message>
    <message>
        <source>File name</source>
        <translation>File name</translation>
    </message>
    <message>
        <source>将所选的OBB文件安装到设备</source>
        <translation>Install the chosen OBB files</translation>
    </message>
    <message>
        <source>在设备上安装选定的OBB文件</source>
        <translation>Install the chosen OBB files on the headset</translation>
    </message>
    <message>
        <source>点击跳过</source>
        <translation>Skip here</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Install</translation>
    </message>
    <message>
        <source>Skip</source>
        <translation>Skip</translation>
    </message>
    <message>
        <source>不再显示</source>
        <translation>Do not show again</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Tip</source>
        <translation>Tip</translation>
    </message>
    <message>
        <source>Orvanta自身已集成到“资源管理器”菜单中, 要安装APK，只需在APK上右键单击并选择Orvanta&#xd;
&#xd;
仅当您要使用其他功能（例如：ADB命令行，已安装的应用程序管理，将Quest挂载为驱动器或运行Quest ADB命令）时，才可以直接启动Orvanta</source>
        <translation>Orvanta is now in the file manager's menu. To install an APK, just right-click it and choose Orvanta.&#xd;
&#xd;
Start Orvanta directly only if you want its other functions (such as the ADB command line, managing installed apps, opening the Quest as a drive, or running Quest ADB commands).</translation>
    </message>
    <message>
        <source>错误：也许没有管理员权限！</source>
        <translation>Error: perhaps there are no administrator rights!</translation>
    </message>
    <message>
        <source>Orvanta将自身集成到资源管理器中， 通过右键单击APK文件，可以使用Orvanta来安装该文件。&#xd;&#xd;在确认资源管理器集成之前，请将Orvanta的目录复制到一个永久磁盘位置</source>
        <translation>Orvanta adds itself to the file manager: with a right click on an APK file, Orvanta can install it.&#xd;&#xd;Before you confirm, copy Orvanta's folder to a place on the disk where it can stay.</translation>
    </message>
    <message>
        <source>是否在鼠标右键菜单中集成Orvanta？</source>
        <translation>Add Orvanta to the right-click menu?</translation>
    </message>
    <message>
        <source>资源管理器集成</source>
        <translation>File manager entry</translation>
    </message>
    <message>
        <source>右键单击APK文件，然后选择“install”</source>
        <translation>Right-click an APK file, then choose “install”</translation>
    </message>
    <message>
        <source>App Name</source>
        <translation>App Name</translation>
    </message>
    <message>
        <source>Package Name</source>
        <translation>Package Name</translation>
    </message>
    <message>
        <source>Build</source>
        <translation>Build</translation>
    </message>
    <message>
        <source>Used Space</source>
        <translation>Used Space</translation>
    </message>
    <message>
        <source>Used APK Space</source>
        <translation>Used APK Space</translation>
    </message>
    <message>
        <source>Used OBB Space</source>
        <translation>Used OBB Space</translation>
    </message>
    <message>
        <source>Used App Data</source>
        <translation>Used App Data</translation>
    </message>
    <message>
        <source>&lt;- Click to sort</source>
        <translation>&lt;- Click to sort</translation>
    </message>
    <message>
        <source>Installed Apps</source>
        <translation>Installed Apps</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copy</translation>
    </message>
    <message>
        <source>Backup APK</source>
        <translation>Backup APK</translation>
    </message>
    <message>
        <source>Backup APK + OBB</source>
        <translation>Backup APK + OBB</translation>
    </message>
    <message>
        <source>卸载 APK</source>
        <translation>Uninstall APK</translation>
    </message>
    <message>
        <source>Launch App</source>
        <translation>Launch App</translation>
    </message>
    <message>
        <source>Backup Non-Root App Data</source>
        <translation>Backup Non-Root App Data</translation>
    </message>
    <message>
        <source>Restore Non-Root App Data</source>
        <translation>Restore Non-Root App Data</translation>
    </message>
    <message>
        <source>Manage Permissions</source>
        <translation>Manage Permissions</translation>
    </message>
    <message>
        <source>Processing Apps: 0 of %1</source>
        <translation>Processing Apps: 0 of %1</translation>
    </message>
    <message>
        <source>%1 %2 of %3</source>
        <translation>%1 %2 of %3</translation>
    </message>
    <message>
        <source>Guardian</source>
        <translation>Guardian</translation>
    </message>
    <message>
        <source>Set Refresh Rate</source>
        <translation>Set Refresh Rate</translation>
    </message>
    <message>
        <source>Full Rate Capture</source>
        <translation>Full Rate Capture</translation>
    </message>
    <message>
        <source>Video Capture Size</source>
        <translation>Video Capture Size</translation>
    </message>
    <message>
        <source>Set Fixed Foveated Rendering level</source>
        <translation>Set Fixed Foveated Rendering level</translation>
    </message>
    <message>
        <source>Texture Size</source>
        <translation>Texture Size</translation>
    </message>
    <message>
        <source>Reboot Quest</source>
        <translation>Reboot Quest</translation>
    </message>
    <message>
        <source>On</source>
        <translation>On</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Off</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>Permissions</source>
        <translation>Permissions</translation>
    </message>
    <message>
        <source>Permissions in Manifest</source>
        <translation>Permissions in Manifest</translation>
    </message>
    <message>
        <source>Manage permissions</source>
        <translation>Manage permissions</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Done</translation>
    </message>
    <message>
        <source>Permission Granted</source>
        <translation>Permission Granted</translation>
    </message>
    <message>
        <source>找不到应用数据</source>
        <translation>No app data found</translation>
    </message>
    <message>
        <source>找不到应用程序数据！</source>
        <translation>The app's data was not found!</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Select destination Folder</source>
        <translation>Select destination Folder</translation>
    </message>
    <message>
        <source>选择包含备份数据的文件夹</source>
        <translation>Choose the folder that holds the backed-up data</translation>
    </message>
    <message>
        <source>没有找到备份！</source>
        <translation>No backup was found!</translation>
    </message>
    <message>
        <source>备份还原</source>
        <translation>Backup restored</translation>
    </message>
    <message>
        <source>APK already uninstalled</source>
        <translation>APK already uninstalled</translation>
    </message>
    <message>
        <source>成功，APK已卸载</source>
        <translation>Success, the APK is uninstalled</translation>
    </message>
    <message>
        <source>Save extracted APK as</source>
        <translation>Save extracted APK as</translation>
    </message>
    <message>
        <source>请稍候，这可能需要一段时间...</source>
        <translation>Please wait, this can take a while...</translation>
    </message>
    <message>
        <source>Chill</source>
        <translation>Chill</translation>
    </message>
</context>
</TS>
